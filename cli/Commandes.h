// The command's sub-commands. Each returns the process's exit status: 0 done,
// 2 bad input or usage (one line on standard error, nothing written), 1 failure.
#pragma once

#include <string>
#include <vector>

namespace prefa_cli
{

struct Options
{
    std::string file;      // input file; empty for the built-in example
    std::string outDir = "."; // where pictures go
    bool json = false;     // results as JSON on standard output
    bool help = false;
    bool noPicture = false;
    std::string target;    // pack, unpack: the second operand (archive or folder)
    std::string password;  // pack, unpack: --password, else $PREFA_ZIP_PASSWORD
    bool passwordGiven = false;
    bool aes = false;      // pack: AES-256 rather than the traditional encryption
    double every = 0;      // fire: minutes between the times of the history, 0 for none
    std::string csv;       // fire: the history also goes to this CSV file
};

// Parses the arguments after the sub-command's name; throws InputError on a bad one.
Options ParseOptions(const std::string& command, const std::vector<std::string>& args);

int FireCommand(const Options& o);
int SectionCommand(const Options& o);
int PackCommand(const Options& o);
int UnpackCommand(const Options& o);

std::string FireHelp();
std::string SectionHelp();
std::string PackHelp();
std::string UnpackHelp();
std::string MainHelp();

// Joins a folder and a file name.
std::string PathIn(const std::string& dir, const std::string& name);

} // namespace prefa_cli
