// An owning ordered list of contours: the contours of a section and its openings, or
// the pieces of a contour that crossed itself. Polygons added by AddHead, AddTail
// and InsertBefore belong to the list; RemoveHead, RemoveAt and RemoveAll only unlink
// and hand them back to the caller.
//
// The list keeps the last position produced by GetHeadPosition, GetTailPosition,
// FindIndex, GetNext and GetPrev (after the move) for callers that walk it.
//
// PolyClipping (CListePolygoneClipping.cpp) runs the boolean operation on the
// Clipper library (integer coordinates, see the scale there):
// - bEfface non-zero empties the list first; 0 appends to it.
// - mode 0: results are strictly simple (two pieces touching at a single point come
//   out as two contours); mode 1: the clipping library's plain output, where such
//   pieces may stay one contour touching itself.
// - bTrous 0: only outer contours are appended, all counter-clockwise; non-zero:
//   the holes of the result are appended too, clockwise, so that the list reads as
//   a section (outline counter-clockwise, openings clockwise).
// - Returns the number of contours appended, or -1 when a coordinate lies beyond
//   the range the scale allows (nothing appended).
// Union(d, mode) merges the contours lying closer than about 2d: each pair of grown
// contours whose union is a single contour is replaced by it, until no pair merges.
#pragma once

#include "geometry/CPolygone.h"

enum code_clipping
{
    CLIPPING_UNION = 0,
    CLIPPING_INTERSECTION = 1,
    CLIPPING_DIFFERENCE = 2, // first contour minus the second
};

class CListePolygone : public CObject
{
    DECLARE_SERIAL(CListePolygone)
public:
    CListePolygone();
    explicit CListePolygone(const CPolygone& p);
    CListePolygone(const CListePolygone& l);
    // Returns a copy of the result, as the suite's callers expect.
    CListePolygone operator=(const CListePolygone& l);
    ~CListePolygone() override;

    // Deletes every polygon.
    void Delete();

    BOOL IsEmpty() const { return m_Polygones.IsEmpty(); }
    INT_PTR GetCount() const { return m_Polygones.GetCount(); }

    // The list takes ownership of the polygon, also when the insertion throws (the
    // polygon is then deleted): AddTail(new CPolygone(...)) never leaks.
    POSITION AddHead(CPolygone* p);
    POSITION AddTail(CPolygone* p);
    POSITION InsertBefore(POSITION pos, CPolygone* p);

    POSITION GetHeadPosition();
    POSITION GetTailPosition();
    POSITION FindIndex(INT_PTR i);
    POSITION GetCurrentPosition() const { return m_posCourante; }
    CPolygone* GetHead() { return m_Polygones.GetHead(); }
    CPolygone* GetTail() { return m_Polygones.GetTail(); }
    CPolygone* GetAt(POSITION pos) { return m_Polygones.GetAt(pos); }
    const CPolygone* GetAt(POSITION pos) const { return m_Polygones.GetAt(pos); }
    CPolygone* GetNext(POSITION& pos);
    CPolygone* GetPrev(POSITION& pos);
    // Walk without touching the current position (for const callers).
    const CPolygone* GetNextConst(POSITION& pos) const { return m_Polygones.GetNext(pos); }
    POSITION GetHeadPositionConst() const { return m_Polygones.GetHeadPosition(); }

    // Unlink without deleting.
    CPolygone* RemoveHead() { return m_Polygones.RemoveHead(); }
    void RemoveAt(POSITION pos) { m_Polygones.RemoveAt(pos); }
    void RemoveAll() { m_Polygones.RemoveAll(); m_posCourante = nullptr; }

    int operator==(const CListePolygone& l) const;
    int operator!=(const CListePolygone& l) const { return !(*this == l); }

    // A 32-bit count, then each polygon. Loading appends to the list.
    void Serialize(CArchive& ar) override;
    void Trace() const;

    // Appends simple contours equivalent to p; 1 when p had to be split, else 0.
    // bSupprimeInverses drops the loops that run clockwise (the inverted loops of an
    // offset) instead of appending them reversed.
    int RendRegulier(const CPolygone& p, int bSupprimeInverses);
    // Merges the contours that touch or lie closer than about 2d.
    void Union(double d, int mode = 1);
    // Boolean operation between a and b, results appended (see above).
    int PolyClipping(int bEfface, CPolygone& a, CPolygone& b, code_clipping code, int mode = 0,
                     int bTrous = 0);

private:
    void CopieListe(const CListePolygone& l);

    CTypedPtrList<CPtrList, CPolygone*> m_Polygones;
    POSITION m_posCourante = nullptr;
};
