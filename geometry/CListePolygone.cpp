// The contour list: ownership, walking, copies, archive form, the split of a
// self-crossing contour into simple ones, and the merge of close contours.
#include "geometry/CListePolygone.h"
#include "geometry/GeometrieInterne.h"

#include <memory>
#include <vector>

IMPLEMENT_SERIAL(CListePolygone, CObject, 1)

CListePolygone::CListePolygone() : m_Polygones(10) {}

CListePolygone::CListePolygone(const CPolygone& p) : m_Polygones(10)
{
    AddTail(new CPolygone(p));
}

CListePolygone::CListePolygone(const CListePolygone& l) : CObject(), m_Polygones(10)
{
    CopieListe(l);
}

CListePolygone CListePolygone::operator=(const CListePolygone& l)
{
    if (this != &l)
    {
        Delete();
        CopieListe(l);
    }
    return *this;
}

CListePolygone::~CListePolygone()
{
    Delete();
}

void CListePolygone::CopieListe(const CListePolygone& l)
{
    // A copy that fails half-way frees what it made (a constructor's destructor does
    // not run).
    try
    {
        for (POSITION pos = l.m_Polygones.GetHeadPosition(); pos;)
            AddTail(new CPolygone(*l.m_Polygones.GetNext(pos)));
    }
    catch (...)
    {
        Delete();
        throw;
    }
}

POSITION CListePolygone::AddHead(CPolygone* p)
{
    return prefa_geometrie::LieOuDetruit(p, [this](CPolygone* q) { return m_Polygones.AddHead(q); });
}

POSITION CListePolygone::AddTail(CPolygone* p)
{
    return prefa_geometrie::LieOuDetruit(p, [this](CPolygone* q) { return m_Polygones.AddTail(q); });
}

POSITION CListePolygone::InsertBefore(POSITION pos, CPolygone* p)
{
    return prefa_geometrie::LieOuDetruit(p, [&](CPolygone* q) { return m_Polygones.InsertBefore(pos, q); });
}

void CListePolygone::Delete()
{
    for (POSITION pos = m_Polygones.GetHeadPosition(); pos;)
        delete m_Polygones.GetNext(pos);
    m_Polygones.RemoveAll();
    m_posCourante = nullptr;
}

POSITION CListePolygone::GetHeadPosition()
{
    return m_posCourante = m_Polygones.GetHeadPosition();
}

POSITION CListePolygone::GetTailPosition()
{
    return m_posCourante = m_Polygones.GetTailPosition();
}

POSITION CListePolygone::FindIndex(INT_PTR i)
{
    return m_posCourante = m_Polygones.FindIndex(i);
}

CPolygone* CListePolygone::GetNext(POSITION& pos)
{
    CPolygone* p = m_Polygones.GetNext(pos);
    m_posCourante = pos;
    return p;
}

CPolygone* CListePolygone::GetPrev(POSITION& pos)
{
    CPolygone* p = m_Polygones.GetPrev(pos);
    m_posCourante = pos;
    return p;
}

int CListePolygone::operator==(const CListePolygone& l) const
{
    if (GetCount() != l.GetCount())
        return 0;
    POSITION a = m_Polygones.GetHeadPosition(), b = l.m_Polygones.GetHeadPosition();
    while (a)
    {
        if (!(*m_Polygones.GetNext(a) == *l.m_Polygones.GetNext(b)))
            return 0;
    }
    return 1;
}

void CListePolygone::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        ar << (LONG)m_Polygones.GetCount();
        for (POSITION pos = m_Polygones.GetHeadPosition(); pos;)
            m_Polygones.GetNext(pos)->Serialize(ar);
    }
    else
    {
        LONG n = 0;
        ar >> n;
        if (n < 1)
            return;
        // Every polygon takes at least its 4-byte count.
        ar.CheckAvailable((ULONGLONG)n, 4);
        for (LONG i = 0; i < n; ++i)
        {
            std::unique_ptr<CPolygone> p(new CPolygone);
            p->Serialize(ar);
            AddTail(p.release());
        }
    }
}

void CListePolygone::Trace() const
{
    for (POSITION pos = m_Polygones.GetHeadPosition(); pos;)
        m_Polygones.GetNext(pos)->Trace();
}

int CListePolygone::RendRegulier(const CPolygone& p, int bSupprimeInverses)
{
    std::unique_ptr<CPolygone> copie(new CPolygone(p));
    if (copie->GetCount() < 3)
    {
        AddTail(copie.release());
        return 0;
    }

    // The cuts are worked from an explicit stack rather than by recursion, so that a
    // contour with thousands of crossings cannot exhaust the call stack; the order of
    // the appended pieces is the recursive one (first loop, with all its own pieces,
    // before the rest).
    struct Tache
    {
        std::unique_ptr<CPolygone> poly;
        bool aCouper; // false: a piece to examine; true: a piece known to cross itself
    };
    std::vector<Tache> pile;
    auto examine = [&](std::unique_ptr<CPolygone> piece) {
        if (piece->GetCount() <= 2)
            return;
        switch (piece->Regulier())
        {
        case 2:
            pile.push_back({std::move(piece), true});
            break;
        case 0:
            AddTail(piece.release());
            break;
        default:
            if (!bSupprimeInverses)
            {
                piece->InverseSens();
                AddTail(piece.release());
            }
            break;
        }
    };

    // Each cut inserts two points; a bound on the cuts stops a degenerate contour
    // that would keep finding the same crossing.
    const std::size_t n = (std::size_t)copie->GetCount();
    std::size_t coupesRestantes = n * n + 16;

    {
        std::unique_ptr<CPolygone> A(new CPolygone), B(new CPolygone);
        if (!copie->EclatePolygone(A.get(), B.get()))
        {
            if (copie->Surface(true) < 0.0)
                copie->InverseSens();
            AddTail(copie.release());
            return 0;
        }
        pile.push_back({std::move(B), false});
        pile.push_back({std::move(A), false});
    }
    while (!pile.empty())
    {
        Tache t = std::move(pile.back());
        pile.pop_back();
        if (!t.aCouper)
        {
            examine(std::move(t.poly));
            continue;
        }
        std::unique_ptr<CPolygone> A(new CPolygone), B(new CPolygone);
        if (coupesRestantes == 0 || !t.poly->EclatePolygone(A.get(), B.get()))
        {
            AddTail(t.poly.release());
            continue;
        }
        --coupesRestantes;
        pile.push_back({std::move(B), false});
        pile.push_back({std::move(A), false});
    }
    return 1;
}

namespace
{
// The clean-up that Union applies to every grown, merged or shrunk contour; false
// when the contour is reduced to 2 points or fewer.
bool NettoieUnion(CPolygone& p)
{
    p.EliminePointSingulier(0, 0.1);
    p.PointsIdentiques(1, 0.001);
    if (p.GetCount() > 2)
        p.EliminePointSingulier(1, 0.001);
    return p.GetCount() > 2;
}
} // namespace

void CListePolygone::Union(double d, int mode)
{
    std::vector<std::unique_ptr<CPolygone>> contours;
    while (!m_Polygones.IsEmpty())
    {
        std::unique_ptr<CPolygone> p(m_Polygones.RemoveHead());
        p->Decale(-d, 1);
        if (NettoieUnion(*p))
            contours.push_back(std::move(p));
    }
    m_posCourante = nullptr;

    // Pairs are tried in list order; a pair whose union is one contour is replaced by
    // it (at the first one's place) and the search starts again.
    bool fusion = true;
    while (fusion)
    {
        fusion = false;
        for (std::size_t i = 0; i < contours.size() && !fusion; ++i)
        {
            for (std::size_t j = i + 1; j < contours.size() && !fusion; ++j)
            {
                CListePolygone r;
                if (r.PolyClipping(0, *contours[i], *contours[j], CLIPPING_UNION, mode) != 1)
                    continue;
                std::unique_ptr<CPolygone> u(r.RemoveHead());
                // A rectangle needs no clean-up; anything else loses its spikes and
                // aligned points.
                if (!(u->GetCount() == 4 && u->EstRectangle()) && !NettoieUnion(*u))
                    continue;
                contours[i] = std::move(u);
                contours.erase(contours.begin() + (std::ptrdiff_t)j);
                fusion = true;
            }
        }
    }
    for (auto& p : contours)
    {
        p->Decale(d, 1);
        if (NettoieUnion(*p))
            AddTail(p.release());
    }
}
