// What an engineer gives the command, read from a small JSON file and checked before
// anything is computed or written. A bad file gives one InputError naming the file,
// the field and what is wrong.
#pragma once

#include "Courbe.h"
#include "Svg.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace prefa_cli
{

class InputError : public std::runtime_error
{
public:
    InputError(const std::string& file, const std::string& field, const std::string& what)
        : std::runtime_error(file + ": " + (field.empty() ? std::string() : field + ": ") + what)
    {
    }
};

struct Bar
{
    std::string name;
    Point2 p;
};

enum class Method
{
    Ec2,
    Itbtp,
    Zolt,
    Dtu
};

struct FireInput
{
    std::string source;               // file name, or "built-in example"
    Contour outline;                  // metres
    std::vector<Contour> cavities;
    std::vector<Contour> materials;   // zones of other materials (index = order)
    std::vector<Contour> moistureZones;
    std::vector<Bar> bars;
    Method method = Method::Ec2;
    std::vector<double> durations;    // hours, increasing order of the file
    double cell = 0.005;              // cell side, metres
    FireCurve curve;                  // any for Eurocode 2, the standard fire for the others
    std::vector<bool> exposed;        // per side of the outline (point k to k+1); empty: every side
    int aggregate = 0;                // Eurocode 2: 0 siliceous, 1 calcareous, 2 lightweight
    bool aggregateConductivity = false;
    double moisture = 0.015;          // Eurocode 2: water per volume of concrete (latent heat)
};

struct SectionInput
{
    std::string source;
    std::vector<Contour> contours; // the section's contours
    std::vector<Contour> openings; // holes, subtracted
};

FireInput ReadFireInput(const std::string& path);
FireInput ExampleFireInput();
SectionInput ReadSectionInput(const std::string& path);
// The same from a JSON text already in memory; source names it in the errors.
FireInput ParseFireInput(const std::string& source, const std::string& text);
SectionInput ParseSectionInput(const std::string& source, const std::string& text);
SectionInput ExampleSectionInput();

const char* MethodName(Method m);

// The JSON texts of the two built-in examples (also in examples/).
extern const char* const kFireExampleJson;
// The exposure examples of the help (also in examples/).
extern const char* const kSlabExampleJson;
extern const char* const kBeam3ExampleJson;
extern const char* const kColumnExampleJson;
extern const char* const kSectionExampleJson;

} // namespace prefa_cli
