// The fire curve of the command's input: one of the nominal curves by name, a table of
// (minutes, degrees) in the JSON or in a CSV file, or the parametric fire of EN 1991-1-2
// Annex A from the compartment's data; made into the library's curve for the Eurocode 2
// method. The other methods compute under the standard fire only.
#pragma once

#include <prefa.h>

#include <memory>
#include <string>
#include <vector>

namespace prefa_cli
{

struct FireCurve
{
    enum class Kind
    {
        Standard,         // ISO 834
        External,         // EN 1991-1-2, t in minutes
        Hydrocarbon,      // EN 1991-1-2, t in minutes
        SuiteExternal,    // the suite's programs' curves: exponents on hours
        SuiteHydrocarbon,
        Table,
        Parametric
    };
    Kind kind = Kind::Standard;
    std::vector<CCourbeFeuTable::Point> points; // Table: minutes, degrees
    std::string file;                           // Table: the CSV file it came from, if any
    double convection = 25.0;                   // Table: W/(m2 K)
    double openingFactor = 0, fireLoad = 0, inertia = 0; // Parametric: O, qt,d, b
    CCourbeFeuParametrique::CROISSANCE growth = CCourbeFeuParametrique::MOYENNE;
};

// The names of the nominal curves, in the order of Kind.
extern const char* const kCurveNames[5];

// Reads a CSV file of (minutes, degrees) lines: separators ',' ';' or tab (with ';' or a
// tab, decimal commas are accepted), '#' comment lines, blank lines and a first header
// line are skipped. Throws InputError naming the file and the line.
std::vector<CCourbeFeuTable::Point> ReadCurveCsv(const std::string& path);
// The same from the file's text.
std::vector<CCourbeFeuTable::Point> ParseCurveCsv(const std::string& source, const std::string& text);

std::unique_ptr<CCourbeFeu> MakeCurve(const FireCurve& c);
// "standard", "hydrocarbon", "table of 12 points", "parametric (O 0.04, ...)" ...
std::string FireCurveName(const FireCurve& c);
// A few words on the curve for the text report ("" for the nominal ones).
std::string FireCurveDetails(const FireCurve& c);

} // namespace prefa_cli
