// Pieces shared by the exact section calculation's sources but not part of the
// library's interface.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

namespace prefa_section
{

// A running sum with Neumaier's compensation: the rounding error of every addition is
// kept aside and added back at the end, so the result does not depend on the number of
// terms nor on their order.
class SommeCompensee
{
public:
    void Ajoute(double v)
    {
        const double t = m_s + v;
        m_c += std::fabs(m_s) >= std::fabs(v) ? (m_s - t) + v : (v - t) + m_s;
        m_s = t;
    }
    double Valeur() const { return m_s + m_c; }

private:
    double m_s = 0.0;
    double m_c = 0.0;
};

// The section as closed loops of coordinates in one flat pair of arrays: loop k runs
// from debut[k] to debut[k + 1] - 1 and repeats its first point at its end, so that its
// sides are (i, i + 1). Contours come first and turn counter-clockwise, openings follow
// and turn clockwise: Green's theorem over all loops then integrates over the section.
struct Boucles
{
    std::vector<double> x, y;
    std::vector<std::size_t> debut{0};
    std::size_t nContours = 0; // loops 0 to nContours - 1 are contours

    std::size_t Nombre() const { return debut.size() - 1; }
};

// Plastic neutral axis of the section parallel to one axis, and the plastic modulus
// about it, in the loops' coordinates.
struct AxeNeutre
{
    double position = 0.0; // level of the axis: y for a horizontal axis, x for a vertical one
    double module = 0.0;   // integral of the distance to the axis over the area
};

// The horizontal (bVertical false) or vertical axis that halves the area.
AxeNeutre DonneAxeNeutrePlastique(const Boucles& b, bool bVertical);

} // namespace prefa_section
