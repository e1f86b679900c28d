// Boolean operations between two contours on the Clipper library.
//
// Clipper works on 64-bit integer coordinates, so contours are scaled by kEchelle
// (1e11 per length unit) and rounded. Why this cannot change a result at the 1e-10
// tolerance the geometry compares coordinates with:
// - An input vertex moves by at most half a unit, 5e-12 in x and in y, and comes
//   back from the integers within that same 5e-12: well below 1e-10.
// - A crossing vertex that Clipper computes is rounded to the nearest integer (again
//   5e-12). Clipper computes it in doubles from integer inputs; while the scaled
//   coordinates stay below 2^53 (about 9e15, that is |x| up to 9e4 units) those
//   integers are exact in a double and the error of the computation stays within a
//   unit or two (2e-11), still five times finer than 1e-10. Slope and orientation
//   tests are exact (128-bit products over the full range).
// - Beyond 9e4 units the honest bound grows with the magnitude (about |x| 1e-16 on
//   top of the rounding); up to the range checked below (|x| <= 4e7, Clipper's
//   hiRange of 4.6e18 divided by the scale, with a margin) it stays below 1e-8.
//   Sections in metres or centimetres are far inside the exact zone; coordinates
//   beyond the checked range are refused (PolyClipping returns -1).
#include "geometry/CListePolygone.h"

#include <clipper.hpp>

#include <algorithm>
#include <cmath>
#include <memory>

namespace
{
const double kEchelle = 1e11;
const double kMaxCoord = 4e7;

bool VersChemin(const CPolygone& p, ClipperLib::Path& chemin)
{
    chemin.clear();
    if (p.GetCount() < 3)
        return true; // an empty operand
    chemin.reserve((std::size_t)p.GetCount());
    for (POSITION pos = p.GetHeadPosition(); pos;)
    {
        const CPointD q = p.GetPointNext(pos);
        if (!(std::fabs(q.x) <= kMaxCoord && std::fabs(q.y) <= kMaxCoord))
            return false;
        chemin.emplace_back((ClipperLib::cInt)std::llround(q.x * kEchelle),
                            (ClipperLib::cInt)std::llround(q.y * kEchelle));
    }
    return true;
}

// Whether some vertex appears twice in the solution: where Clipper's plain output
// touches itself (or two pieces touch) it does so at a shared vertex.
bool SommetRepete(const ClipperLib::Paths& chemins)
{
    std::vector<std::pair<ClipperLib::cInt, ClipperLib::cInt>> sommets;
    for (const ClipperLib::Path& c : chemins)
        for (const ClipperLib::IntPoint& q : c)
            sommets.emplace_back(q.X, q.Y);
    std::sort(sommets.begin(), sommets.end());
    return std::adjacent_find(sommets.begin(), sommets.end()) != sommets.end();
}
} // namespace

int CListePolygone::PolyClipping(int bEfface, CPolygone& a, CPolygone& b, code_clipping code,
                                 int mode, int bTrous)
{
    ClipperLib::Path pa, pb;
    if (!VersChemin(a, pa) || !VersChemin(b, pb))
        return -1;
    ClipperLib::ClipType type = ClipperLib::ctUnion;
    if (code == CLIPPING_INTERSECTION)
        type = ClipperLib::ctIntersection;
    else if (code == CLIPPING_DIFFERENCE)
        type = ClipperLib::ctDifference;

    // Strictly simple output costs Clipper a quadratic pass, so it is asked for
    // only when the plain output does touch itself.
    ClipperLib::Paths solution;
    for (bool strict : {false, true})
    {
        ClipperLib::Clipper clipper;
        clipper.StrictlySimple(strict);
        if (pa.size() >= 3)
            clipper.AddPath(pa, ClipperLib::ptSubject, true);
        if (pb.size() >= 3)
            clipper.AddPath(pb, ClipperLib::ptClip, true);
        // Non-zero filling: each operand is one simple contour, of either orientation.
        solution.clear();
        if (!clipper.Execute(type, solution, ClipperLib::pftNonZero, ClipperLib::pftNonZero))
            return -1;
        if (mode != 0 || !SommetRepete(solution))
            break;
    }

    if (bEfface)
        Delete();
    int nombre = 0;
    for (const ClipperLib::Path& chemin : solution)
    {
        if (chemin.size() < 3)
            continue;
        const bool trou = !ClipperLib::Orientation(chemin);
        if (trou && !bTrous)
            continue;
        std::unique_ptr<CPolygone> p(new CPolygone);
        for (const ClipperLib::IntPoint& q : chemin)
            p->AddTail((double)q.X / kEchelle, (double)q.Y / kEchelle);
        // Outer contours come counter-clockwise, holes clockwise; the cache is filled
        // as it is so that reading a hole's extents does not turn it round.
        p->Surface(false);
        AddTail(p.release());
        ++nombre;
    }
    return nombre;
}
