// Exact geometric properties of a cross-section, with what design needs: area,
// centroid, second moments and product about the centroid, principal moments and axes,
// elastic moduli to the extreme fibres, radii of gyration, plastic neutral axes and
// plastic moduli, perimeters and the box. CSectionGenerale keeps the suite's own
// formulas for its files; this class gives the values an engineer checks a design with.
//
// Input: the section's contours and its openings, two lists of simple contours (a
// contour that crosses itself is first split with CListePolygone::RendRegulier).
// Orientation and starting point do not matter: every contour counts as material and
// every opening as a hole, whichever way it turns. Contours of fewer than 3 points are
// ignored. Lengths in metres, angles in degrees.
//
// Conventions:
// - Ix = integral of (y - yG)^2 dA, the moment about the horizontal axis through the
//   centroid G; Iy = integral of (x - xG)^2 dA; Ixy = integral of (x - xG)(y - yG) dA,
//   positive when the material lies mostly right-above and left-below G.
// - Axis 1 carries the larger principal moment I1; m_Angle, in (-90, 90], is measured
//   counter-clockwise from the x axis to axis 1: tan(2 m_Angle) = -2 Ixy / (Ix - Iy).
//   Axis 2 is axis 1 turned by +90 degrees. When I1 and I2 differ by less than 1e-9 of
//   their mean every axis is principal: the angle is 0 and axes 1 and 2 are x and y.
// - Each axis through G has a positive side, the side its companion axis points to:
//   above the x axis, right of the y axis, the side of axis 2 for axis 1, the side of
//   axis 1 for axis 2. The extreme fibre distances are the largest distances of a
//   contour vertex from the axis on each side; W = I / distance.
// - Plastic neutral axes are parallel to x and y and halve the area; the plastic
//   modulus is the integral of the distance to that axis over the area (b h^2 / 4 for a
//   rectangle). When a band of zero width splits the section (two separate parts),
//   every line in the band halves the area and the middle of the band is taken; the
//   modulus is the same for all of them.
//
// How, and how exact:
// - Coordinates are first taken relative to the centre of the contours' box: far from
//   the origin these differences are exact (the two values lie within a factor 2), so
//   the distance of the section from the origin costs nothing. The moments are then
//   integrated a second time about the centroid found by the first pass, and the
//   principal moments a third time in the principal frame, so that no result comes
//   from a difference of large terms (a thin plate at 30 degrees keeps its small I2).
//   Sums are compensated (Neumaier): their error does not grow with the vertex count.
// - Each side contributes the closed-form integrals of the triangle it makes with the
//   origin. The results are those of the polygons given to a few units of rounding
//   (1e-15 relative in the tests' closed forms, turned or not). Far from the origin the
//   limit is the input itself: at (1e5, 2e5) a coordinate is only known to 1.5e-11 m,
//   which moves the moments of a 0.3 m section by up to 3e-10 relative; the calculation
//   adds nothing measurable to that.
// - The area below a line at level t is, by Green's theorem, minus the integral of
//   min(v - t, 0) du round the contours (u along the line, v across it), evaluated side
//   by side by clipping each side at the line. It grows monotonically and is exactly
//   quadratic between two successive vertex levels: a binary search over the sorted
//   vertex levels brackets the half area and the quadratic is solved in closed form in
//   that bracket. The axis is as exact as the area: its error is that of the area
//   divided by the section's width there. O(n log n) for n vertices.
#pragma once

#include "geometry/CListePolygone.h"

class CProprietesSection
{
public:
    // Properties of the section about one axis through the centroid.
    struct Axe
    {
        double I = 0.0;        // second moment (m4)
        double i = 0.0;        // radius of gyration, sqrt(I / A) (m)
        double vPositif = 0.0; // distance to the extreme fibre on the positive side (m)
        double vNegatif = 0.0; // on the negative side, also positive (m)
        double WPositif = 0.0; // elastic modulus I / vPositif (m3)
        double WNegatif = 0.0; // I / vNegatif (m3)
    };

    // A plastic neutral axis and the plastic modulus about it.
    struct AxePlastique
    {
        double position = 0.0; // y of the horizontal axis, x of the vertical axis (m)
        double W = 0.0;        // plastic modulus (m3)
    };

    // Computes every property; 1 when done, 0 when the contours hold no area (no
    // contour of 3 points, a coordinate that is not finite, or openings that leave less
    // than 1e-12 of the contours' area), every value then being 0.
    int Calcule(const CListePolygone& contours, const CListePolygone& ouvertures);

    double m_Aire = 0.0;   // m2
    double m_Xg = 0.0;     // centroid (m)
    double m_Yg = 0.0;
    double m_Ixy = 0.0;    // product of inertia about the centroid (m4)
    double m_Angle = 0.0;  // from the x axis to axis 1, degrees
    Axe m_AxeX;            // horizontal axis through the centroid: Ix
    Axe m_AxeY;            // vertical axis through the centroid: Iy
    Axe m_Axe1;            // principal axis of I1 (the larger)
    Axe m_Axe2;            // principal axis of I2
    AxePlastique m_PlastiqueX; // horizontal plastic neutral axis
    AxePlastique m_PlastiqueY; // vertical plastic neutral axis
    double m_Perimetre1 = 0.0; // perimeter of the contours (m)
    double m_Perimetre2 = 0.0; // perimeter of the openings (m)
    double m_Xmin = 0.0;   // box of the contours (m)
    double m_Ymin = 0.0;
    double m_Xmax = 0.0;
    double m_Ymax = 0.0;
};
