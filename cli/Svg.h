// SVG pictures of the command: a temperature field as a colour map with a legend and
// isotherms, section contours, marked points. Coordinates are section metres with y
// upwards; the picture flips them to the SVG frame.
#pragma once

#include <string>
#include <vector>

namespace prefa_cli
{

struct Point2
{
    double x = 0, y = 0;
};

typedef std::vector<Point2> Contour;

// Bounding box of contours; empty (inverted) until a point is added.
struct Box
{
    double xmin = 1e300, ymin = 1e300, xmax = -1e300, ymax = -1e300;
    Box& Add(const Contour& c);
    double Width() const { return xmax - xmin; }
    double Height() const { return ymax - ymin; }
};

// Signed area of a contour, positive counter-clockwise.
double SignedArea(const Contour& c);

// Values on a rectangular grid of cell centres: value(i, j) sits at (xs[j], ys[i]).
// A value that is not a number has no cell (outside the section).
struct ScalarGrid
{
    std::vector<double> xs, ys;
    std::vector<double> values; // row-major, ys.size() rows of xs.size() values
    double cell = 0;            // cell side, metres
    double At(std::size_t i, std::size_t j) const { return values[i * xs.size() + j]; }
};

// One line of a chart: a name and its values at the chart's times.
struct Series
{
    std::string name;
    std::vector<double> values;
};

struct Label
{
    Point2 p;
    std::string text;
};

// One segment of an isotherm, between two points of the plane.
struct Segment
{
    Point2 a, b;
};

// Isolines of the grid at the given level, by marching squares over the cell centres
// (a square with a missing corner yields nothing).
std::vector<Segment> Isolines(const ScalarGrid& grid, double level);

// A colour of the legend's scale for t in [0, 1] as "#rrggbb" (dark blue to white hot).
std::string ColourAt(double t);

// A round step (1, 2 or 5 times a power of ten) giving about `count` ticks over span.
double TickStep(double span, int count);

class SvgPicture
{
public:
    // The drawing covers the box widened by margin on every side.
    SvgPicture(const Box& box, double margin, double widthPixels = 640);

    void Field(const ScalarGrid& grid, double tmin, double tmax);
    // Isotherms every step degrees, each labelled with its temperature where it passes
    // nearest the middle of the field and clear of the other labels.
    void IsothermLines(const ScalarGrid& grid, double step, double tmin, double tmax);
    // A second picture below the first: each series against time (minutes, increasing),
    // every line starting from `initial` at time 0, with axes, ticks and a legend.
    void TimeChart(const std::vector<double>& minutes, const std::vector<Series>& series, double initial,
                   const std::string& title, const std::string& yTitle);
    void Legend(double tmin, double tmax, double step, const std::string& title);
    void Outline(const Contour& c, const std::string& colour, double width, bool dashed = false);
    void Marker(const Label& l, const std::string& colour);
    void Line(Point2 a, Point2 b, const std::string& colour, double width, bool dashed = false,
              const std::string& cls = "");
    // A dimension line from a to b with end ticks and its text beside it (right of an
    // upright one, below a level one).
    void Dimension(Point2 a, Point2 b, const std::string& text);
    void Text(Point2 p, const std::string& text, double size, const std::string& anchor = "start");
    void Title(const std::string& text);

    std::string Str() const;
    // Writes the picture; false when the file cannot be written.
    bool Save(const std::string& path) const;

private:
    double X(double x) const;
    double Y(double y) const;
    double m_xmin, m_ymin, m_xmax, m_ymax, m_scale, m_margin, m_legendWidth;
    double m_chartWidth = 0, m_chartHeight = 0; // the picture below, when there is one
    std::string m_body;
    std::string m_title;
};

std::string EscapeXml(const std::string& s);

// Writes a text file through a mirror file: false, and the old file untouched, when it
// cannot be written whole.
bool SaveText(const std::string& path, const std::string& text);

} // namespace prefa_cli
