// Which sides of the outline the fire heats: "exposed" and "unexposed" name faces by the
// direction they face ("bottom", "top", "left", "right", "all") or by side number (1
// for the side from point 1 to point 2, the last side closing the outline). A side faces
// a direction when its outward normal lies within 45 degrees of it, both ways at 45.
#include "LecteurJson.h"

#include <cmath>

namespace prefa_cli
{

namespace
{
const char* const kFaces[4] = {"bottom", "right", "top", "left"};
const double kDirections[4][2] = {{0, -1}, {1, 0}, {0, 1}, {-1, 0}};

bool Faces(const Contour& c, std::size_t k, int direction)
{
    const Point2 a = c[k], b = c[(k + 1) % c.size()];
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double sens = SignedArea(c) > 0 ? 1.0 : -1.0; // outward is right of a counter-clockwise walk
    const double nx = sens * dy, ny = -sens * dx;
    const double along = nx * kDirections[direction][0] + ny * kDirections[direction][1];
    const double across = std::fabs(nx * kDirections[direction][1] - ny * kDirections[direction][0]);
    return along > 0 && along >= across - 1e-9 * std::hypot(nx, ny);
}

std::vector<bool> Sides(const Reader& r, const char* key, const Contour& outline)
{
    const json& v = r.Root()[key];
    const std::size_t n = outline.size();
    if (!v.is_array() || v.empty())
        r.Fail(key, "a list of faces was expected: \"bottom\", \"top\", \"left\", \"right\", \"all\" or side "
                    "numbers (1 for the side from point 1 to point 2)");
    std::vector<bool> sides(n, false);
    for (std::size_t i = 0; i < v.size(); ++i)
    {
        const std::string f = std::string(key) + "[" + std::to_string(i) + "]";
        const json& e = v[i];
        if (e.is_number_integer())
        {
            const long long k = e.get<long long>();
            if (k < 1 || k > (long long)n)
                r.Fail(f, "the outline's sides are numbered 1 to " + std::to_string(n));
            sides[(std::size_t)k - 1] = true;
            continue;
        }
        const std::string name = e.is_string() ? e.get<std::string>() : std::string();
        if (name == "all")
        {
            sides.assign(n, true);
            continue;
        }
        int d = 0;
        while (d < 4 && name != kFaces[d])
            ++d;
        if (d == 4)
            r.Fail(f, "\"bottom\", \"top\", \"left\", \"right\", \"all\" or a side number was expected");
        bool found = false;
        for (std::size_t k = 0; k < n; ++k)
            if (Faces(outline, k, d))
                sides[k] = found = true;
        if (!found)
            r.Fail(f, "no side of the outline faces " + name);
    }
    return sides;
}
} // namespace

std::vector<bool> ReadExposure(const Reader& r, const Contour& outline)
{
    const bool exposed = r.Root().contains("exposed"), unexposed = r.Root().contains("unexposed");
    if (!exposed && !unexposed)
        return {};
    if (!unexposed)
        return Sides(r, "exposed", outline);
    std::vector<bool> u = Sides(r, "unexposed", outline);
    if (!exposed)
    {
        u.flip();
        return u;
    }
    std::vector<bool> e = Sides(r, "exposed", outline);
    for (std::size_t k = 0; k < e.size(); ++k)
    {
        if (e[k] && u[k])
            r.Fail("unexposed", "side " + std::to_string(k + 1) + " is also exposed");
        if (!e[k] && !u[k])
            r.Fail("exposed", "side " + std::to_string(k + 1) + " is neither exposed nor unexposed");
    }
    return e;
}

std::vector<bool> BottomSides(const Contour& outline)
{
    std::vector<bool> s(outline.size());
    for (std::size_t k = 0; k < s.size(); ++k)
        s[k] = Faces(outline, k, 0);
    return s;
}

} // namespace prefa_cli
