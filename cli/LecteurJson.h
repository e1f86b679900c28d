// Reading the command's JSON input: every value is checked as it is read, and a bad one
// raises one InputError naming the file, the field and what is wrong.
#pragma once

#include "Entree.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <string>

namespace prefa_cli
{

using json = nlohmann::json;

class Reader
{
public:
    Reader(std::string source, const json& root) : m_source(std::move(source)), m_root(root) {}

    [[noreturn]] void Fail(const std::string& field, const std::string& what) const
    {
        throw InputError(m_source, field, what);
    }

    double Number(const json& v, const std::string& field) const
    {
        if (!v.is_number())
            Fail(field, "a number was expected");
        double d = v.get<double>();
        if (!std::isfinite(d))
            Fail(field, "the number is not finite");
        return d;
    }

    Contour ReadContour(const json& v, const std::string& field) const
    {
        if (!v.is_array())
            Fail(field, "a list of [x, y] points was expected");
        Contour c;
        for (std::size_t k = 0; k < v.size(); ++k)
        {
            std::string f = field + "[" + std::to_string(k) + "]";
            const json& p = v[k];
            if (!p.is_array() || p.size() != 2)
                Fail(f, "a point must be [x, y]");
            c.push_back({Number(p[0], f + "[0]"), Number(p[1], f + "[1]")});
        }
        if (c.size() < 3)
            Fail(field, "a contour needs at least 3 points, it has " + std::to_string(c.size()));
        if (std::fabs(SignedArea(c)) < 0.5e-12)
            Fail(field, "the contour encloses no area");
        return c;
    }

    std::vector<Contour> ReadContours(const char* key) const
    {
        std::vector<Contour> out;
        if (!m_root.contains(key))
            return out;
        const json& v = m_root[key];
        if (!v.is_array())
            Fail(key, "a list of contours was expected");
        for (std::size_t k = 0; k < v.size(); ++k)
            out.push_back(ReadContour(v[k], std::string(key) + "[" + std::to_string(k) + "]"));
        return out;
    }

    const json& Root() const { return m_root; }

private:
    std::string m_source;
    const json& m_root;
};

// The readers of the parts of the fire input that have files of their own.
// fire_curve (Courbe.cpp); a CSV file is found from folder, the input file's folder.
FireCurve ReadFireCurve(const Reader& r, const json& v, const std::string& folder);
// exposed and unexposed (Exposition.cpp): one flag per side of the outline, true when
// the side is exposed to the fire; empty when neither key is given (every side).
std::vector<bool> ReadExposure(const Reader& r, const Contour& outline);
// The sides that face down: the exposure of the DTU method's slab model.
std::vector<bool> BottomSides(const Contour& outline);

} // namespace prefa_cli
