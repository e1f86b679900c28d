// A closed plane contour, stored open: n points describe n sides, the closing side
// from the last point back to the first is implied. The polygon owns its points.
//
// Extents and signed area are cached and rebuilt lazily. Every public accessor of the
// cache enforces the orientation: a clockwise contour is reversed the first time its
// extents or area are read, so stored contours end up counter-clockwise (positive
// area, y upwards). Pointer accessors (GetHead, GetAt ...) invalidate the cache; the
// GetPoint... copies do not. The cache accessors are therefore not const.
//
// Fewer than three points have an area of 0 (the strip under a lone side is not an
// area), so such contours are never reversed.
//
// Containment codes: -1 outside, 0 inside, k >= 1 on the boundary (k the 1-based
// side number).
//
// Offsetting (CPolygoneDecale.cpp) - choices of this library:
// - Decale works on the contour as given. A clockwise contour is first turned
//   counter-clockwise and its distances re-ordered and negated, so that "positive
//   moves a side to its left" keeps its geometric meaning; the result is
//   counter-clockwise.
// - Two successive sides that are parallel and continue each other (turn within
//   0.001 degree) are joined through the ends of both offset sides when their
//   distances differ by more than 1e-10 (a short connecting side perpendicular to
//   them), and by the midpoint of those ends otherwise. A side that turns back on
//   itself (turn within 0.001 degree of 180) is joined the same way, by two points.
// - Last step: when every distance is >= 0 (inward) the offset is intersected with
//   the original contour, so it can never leave it; when every distance is <= 0
//   (outward) it is united with the original, so it always contains it; with mixed
//   signs no clipping is done. mode is the PolyClipping mode passed on (0: pieces
//   touching at a single point come out as separate contours; 1: they may stay one
//   contour, the clipping library's plain output).
// - With one distance d for every side, a piece of the cut raw offset is kept only
//   when each of its vertices lies at least d (less 1e-9 relative) from every side
//   of the contour, before and after the clipping: cutting at crossings and dropping
//   the loops that run backwards leaves, near short sides and sharp corners, loops
//   that run forwards yet are too close to the contour or outside it.
// - When the offset splits the contour into several pieces, the piece of largest
//   area is kept; when it collapses (contour narrower than twice the distance) the
//   polygon becomes empty. Both still return 0.
//
// IntersectionPolygoneVecteur: the contour is a closed set. The parts of the line
// (or of the segment, when bSegment is non-zero) that lie inside the contour or on
// its boundary are appended, oriented like v and in increasing order along it; a
// line running along a side therefore yields that side, a line that only touches a
// vertex yields nothing (zero-length parts are not reported).
#pragma once

#include "geometry/CVecteur.h"
#include "geometry/ContenantsEtrangers.h"

class CPolygone : public CObject
{
    DECLARE_SERIAL(CPolygone)
public:
    CPolygone();
    // One point per node, in list order; null or empty gives an empty polygon.
    explicit CPolygone(const l2ch_descrip* liste);
    // Rectangle centred on (cx, cy), turned by angle degrees, counter-clockwise from
    // its lower-left corner; the float sizes lose their single-precision noise.
    CPolygone(double cx, double cy, float largeur, float hauteur, double angle);
    CPolygone(const CPolygone& p);
    CPolygone& operator=(const CPolygone& p);
    ~CPolygone() override;

    // Deletes every point.
    void Delete();

    BOOL IsEmpty() const { return m_Points.IsEmpty(); }
    INT_PTR GetCount() const { return m_Points.GetCount(); }

    // The polygon takes ownership of the point, also when the insertion throws (the
    // point is then deleted): AddTail(new CPointD(...)) never leaks.
    POSITION AddHead(CPointD* p);
    POSITION AddTail(CPointD* p);
    POSITION InsertBefore(POSITION pos, CPointD* p);
    POSITION InsertAfter(POSITION pos, CPointD* p);
    POSITION AddTail(double x, double y);
    // Unlink without deleting the point: the caller takes it over.
    void RemoveAt(POSITION pos);
    void RemoveAt(int index);

    POSITION GetHeadPosition() const { return m_Points.GetHeadPosition(); }
    POSITION GetTailPosition() const { return m_Points.GetTailPosition(); }

    // Modifiable points: these invalidate the cache.
    CPointD* GetHead();
    CPointD* GetTail();
    CPointD* GetNext(POSITION& pos);
    CPointD* GetPrev(POSITION& pos);
    CPointD* GetAt(POSITION pos);
    CPointD* GetAt(int index);

    // Copies: the cache stays valid.
    CPointD GetPointHead() const;
    CPointD GetPointTail() const;
    CPointD GetPointNext(POSITION& pos) const;
    CPointD GetPointPrev(POSITION& pos) const;
    CPointD GetPointAt(POSITION pos) const;
    CPointD GetPointAt(int index) const;
    // Copies x and y only.
    void SetPointAt(POSITION pos, const CPointD& p);

    // Cached extents, refreshed with orientation enforcement when stale.
    double g_Xmin();
    double g_Ymin();
    double g_Xmax();
    double g_Ymax();
    double g_ImpactX();
    double g_ImpactY();
    // Signed area (positive counter-clockwise); a stale cache is rebuilt with the
    // given orientation enforcement.
    double Surface(bool bOriente = true);

    // Side iteration: CotePremier (or CoteDernier), then CoteSuivant until
    // EstDernierCote. Fewer than 2 points raise the invalid-argument exception.
    CVecteur CotePremier();
    CVecteur CoteSuivant();
    CVecteur CoteDernier();
    int EstDernierCote() const;

    // 1 for four points whose successive sides have |dot| <= 0.001 (absolute).
    int EstRectangle();
    // Containment of p in the contour offset by d (see the codes above).
    int AppartientAPolygone(const CPointD& p, double d = 0.0);
    // Same count and same points in the same order, each coordinate within 1e-10.
    int operator==(const CPolygone& q) const;
    int operator!=(const CPolygone& q) const { return !(*this == q); }
    // Same contour up to the starting point, every pair within tol; bRecale first
    // brings both lower-left extents to the origin. A reversed contour differs.
    int Confondu(const CPolygone& q, double tol, int bRecale = 0) const;
    // Centre of gravity (with the mean-height approximation in y); for a non-convex
    // contour the middle of the longest inside chord through it, so that the point
    // always lies inside.
    CPointD DonneCdg();

    // The CPointD transform applied to every point.
    void rotation(const CPointD& c, double a);
    void translation(const CPointD& a, const CPointD& b);
    void translation(const CVecteur& v);
    void ChangeRepere(double a, const CPointD& o);
    // Reverses the point order (the points are not copied; nothing is allocated).
    void InverseSens();

    // Foreign containers of the calling programs.
    void L_POINTEnPolygone(const l2ch_descrip* liste);
    void PolygoneEnL_POINT(l2ch_descrip* liste) const;
    void PolygoneEnArrayPOINTD(CArray<ptD, ptD>& tab) const;

    // A 32-bit point count, then x and y of each point. Loading appends to the
    // existing points and checks the count against the bytes left.
    void Serialize(CArchive& ar) override;
    // Debug listing of the points on standard error.
    void Trace(int n = 0) const;

    // --- offsetting and clean-up ---

    // Offsets every side by d (positive to the left). 0 done, 1 refused (fewer than 3
    // points or a repeated point; nothing changes).
    int Decale(double d, int mode = 0);
    // Offsets side i by *(double*)distances[i]; 0 done, 1 refused (also when the
    // count differs from the point count).
    int Decale(CPtrList* distances, int mode = 0);
    // 1 when two successive points (closing pair included) coincide: within 1e-10 on
    // both coordinates when tol is 0, else at a distance <= tol. bSupprime removes the
    // later point of each pair unless it is marked.
    int PointsIdentiques(int bSupprime, double tol);
    // mode 0 flattens spikes (tol an angle in degrees around 180), mode 1 removes
    // aligned points (unnormalised cross product below 1e-10, or <= |sin tol| when tol
    // is not 0). Marked points are never touched.
    void EliminePointSingulier(int mode, double tol);
    void EliminePointAligne(double tol);
    // 2 when two non-adjacent sides cross (crossing point and the two sides'
    // positions returned when the pointers are not null), else 0 for a positive area
    // and 1 for a non-positive one.
    int Regulier(CPointD* inter = nullptr, POSITION* pos1 = nullptr, POSITION* pos2 = nullptr);
    // Cuts this contour at its first self-intersection I into the loop a (from the
    // copy of I inserted after the first crossing side round to the other copy) and
    // the rest b; copies of I that follow each other (a vertex lying on the crossing)
    // are kept once. Their caches hold their own signed areas, without orientation
    // enforcement. Non-zero when a cut was made; this contour keeps the two inserted
    // points.
    int EclatePolygone(CPolygone* a, CPolygone* b);
    // Appends the inside parts of v's line (see the header comment); their count.
    int IntersectionPolygoneVecteur(const CVecteur& v, CList<CVecteur, CVecteur&>* segments,
                                    int bSegment = 0);
    // Horizontal distance from this contour's points to q's sides: the smallest
    // absolute value when bAbsolu, else the most negative; 0 found, -1 none.
    int DistanceAxeXPolygone(const CPolygone& q, double* distance, int bAbsolu);
    // Horizontal gap between the two contours: 1 when they overlap (*distance = 0),
    // 0 when a gap was measured (the smallest absolute horizontal distance either
    // way), -1 when no horizontal line meets both.
    int DistanceHorzPolygone(const CPolygone& q, double* distance);

protected:
    // Rebuilds extents and area; bOriente reverses a clockwise contour.
    void RecalculDim(bool bOriente);
    void Invalide() { m_bDimsValides = 0; }
    void Valide() { if (!m_bDimsValides) RecalculDim(true); }

private:
    void CopiePoints(const CPolygone& p);
    // The side from the cursor's point to the next one (wrapping); moves the cursor.
    CVecteur AvanceCote();

    CTypedPtrList<CPtrList, CPointD*> m_Points;
    POSITION m_posCote = nullptr;
    CPointD* m_pFinCote = nullptr;
    int m_bDimsValides = 0;
    double m_Xmin;
    double m_Ymin;
    double m_Xmax;
    double m_Ymax;
    double m_Surface;
};
