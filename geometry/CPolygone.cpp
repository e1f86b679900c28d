// The contour core: ownership of the points, the lazy cache, side iteration,
// containment, equality, centre of gravity, transforms, foreign containers and the
// archive form.
#include "geometry/CPolygone.h"

#include "geometry/Routines.h"
#include "geometry/SommeExacte.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

IMPLEMENT_SERIAL(CPolygone, CObject, 1)

CPolygone::CPolygone()
    : m_Points(10), m_Xmin(-DBL_MAX), m_Ymin(-DBL_MAX), m_Xmax(DBL_MAX), m_Ymax(DBL_MAX),
      m_Surface(DBL_MAX)
{
}

CPolygone::CPolygone(const l2ch_descrip* liste) : CPolygone()
{
    L_POINTEnPolygone(liste);
}

CPolygone::CPolygone(double cx, double cy, float largeur, float hauteur, double angle)
    : CPolygone()
{
    const double c = dcos(angle), s = dsin(angle);
    const double a = TransfoFloatDouble(largeur) / 2.0;
    const double b = TransfoFloatDouble(hauteur) / 2.0;
    AddTail(cx - a * c + b * s, cy - a * s - b * c);
    AddTail(cx + a * c + b * s, cy + a * s - b * c);
    AddTail(cx + a * c - b * s, cy + a * s + b * c);
    AddTail(cx - a * c - b * s, cy - a * s + b * c);
}

CPolygone::CPolygone(const CPolygone& p) : CObject(), m_Points(10)
{
    CopiePoints(p);
}

CPolygone& CPolygone::operator=(const CPolygone& p)
{
    if (this != &p)
    {
        Delete();
        CopiePoints(p);
    }
    return *this;
}

CPolygone::~CPolygone()
{
    Delete();
}

void CPolygone::CopiePoints(const CPolygone& p)
{
    for (POSITION pos = p.m_Points.GetHeadPosition(); pos;)
        m_Points.AddTail(new CPointD(*p.m_Points.GetNext(pos)));
    m_bDimsValides = p.m_bDimsValides;
    m_Xmin = p.m_Xmin;
    m_Ymin = p.m_Ymin;
    m_Xmax = p.m_Xmax;
    m_Ymax = p.m_Ymax;
    m_Surface = p.m_Surface;
    m_posCote = nullptr;
    m_pFinCote = nullptr;
}

void CPolygone::Delete()
{
    for (POSITION pos = m_Points.GetHeadPosition(); pos;)
        delete m_Points.GetNext(pos);
    m_Points.RemoveAll();
    m_posCote = nullptr;
    m_pFinCote = nullptr;
    Invalide();
}

POSITION CPolygone::AddHead(CPointD* p)
{
    Invalide();
    return m_Points.AddHead(p);
}

POSITION CPolygone::AddTail(CPointD* p)
{
    Invalide();
    return m_Points.AddTail(p);
}

POSITION CPolygone::InsertBefore(POSITION pos, CPointD* p)
{
    Invalide();
    return m_Points.InsertBefore(pos, p);
}

POSITION CPolygone::InsertAfter(POSITION pos, CPointD* p)
{
    Invalide();
    return m_Points.InsertAfter(pos, p);
}

POSITION CPolygone::AddTail(double x, double y)
{
    return AddTail(new CPointD(x, y));
}

void CPolygone::RemoveAt(POSITION pos)
{
    if (pos == nullptr)
        AfxThrowInvalidArgException();
    if (pos == m_posCote)
        m_posCote = nullptr;
    Invalide();
    m_Points.RemoveAt(pos);
}

void CPolygone::RemoveAt(int index)
{
    POSITION pos = m_Points.FindIndex(index);
    if (pos == nullptr)
        AfxThrowInvalidArgException();
    RemoveAt(pos);
}

CPointD* CPolygone::GetHead()
{
    Invalide();
    return m_Points.GetHead();
}

CPointD* CPolygone::GetTail()
{
    Invalide();
    return m_Points.GetTail();
}

CPointD* CPolygone::GetNext(POSITION& pos)
{
    Invalide();
    return m_Points.GetNext(pos);
}

CPointD* CPolygone::GetPrev(POSITION& pos)
{
    Invalide();
    return m_Points.GetPrev(pos);
}

CPointD* CPolygone::GetAt(POSITION pos)
{
    Invalide();
    return m_Points.GetAt(pos);
}

CPointD* CPolygone::GetAt(int index)
{
    POSITION pos = m_Points.FindIndex(index);
    if (pos == nullptr)
        AfxThrowInvalidArgException();
    return GetAt(pos);
}

CPointD CPolygone::GetPointHead() const { return *m_Points.GetHead(); }
CPointD CPolygone::GetPointTail() const { return *m_Points.GetTail(); }
CPointD CPolygone::GetPointNext(POSITION& pos) const { return *m_Points.GetNext(pos); }
CPointD CPolygone::GetPointPrev(POSITION& pos) const { return *m_Points.GetPrev(pos); }
CPointD CPolygone::GetPointAt(POSITION pos) const { return *m_Points.GetAt(pos); }

CPointD CPolygone::GetPointAt(int index) const
{
    POSITION pos = m_Points.FindIndex(index);
    if (pos == nullptr)
        AfxThrowInvalidArgException();
    return *m_Points.GetAt(pos);
}

void CPolygone::SetPointAt(POSITION pos, const CPointD& p)
{
    CPointD* q = m_Points.GetAt(pos);
    q->x = p.x;
    q->y = p.y;
    Invalide();
}

double CPolygone::g_Xmin() { Valide(); return m_Xmin; }
double CPolygone::g_Ymin() { Valide(); return m_Ymin; }
double CPolygone::g_Xmax() { Valide(); return m_Xmax; }
double CPolygone::g_Ymax() { Valide(); return m_Ymax; }
double CPolygone::g_ImpactX() { Valide(); return m_Xmax - m_Xmin; }
double CPolygone::g_ImpactY() { Valide(); return m_Ymax - m_Ymin; }

double CPolygone::Surface(bool bOriente)
{
    if (!m_bDimsValides)
        RecalculDim(bOriente);
    return m_Surface;
}

void CPolygone::RecalculDim(bool bOriente)
{
    m_Xmin = m_Ymin = m_Xmax = m_Ymax = 0.0;
    // The shoelace terms are summed exactly: reversing the contour negates every term,
    // so the reversed contour's area is exactly the opposite. A running sum would
    // round differently in the two directions and can find a near-zero area negative
    // both ways.
    prefa_geometrie::SommeExacte aire;
    POSITION pos = m_Points.GetHeadPosition();
    if (pos)
    {
        const CPointD* p0 = m_Points.GetNext(pos);
        m_Xmin = m_Xmax = p0->x;
        m_Ymin = m_Ymax = p0->y;
        const CPointD* prec = p0;
        while (pos)
        {
            const CPointD* p = m_Points.GetNext(pos);
            aire.Ajoute(-(p->x - prec->x) * (prec->y + p->y) / 2.0);
            m_Xmin = std::min(m_Xmin, p->x);
            m_Xmax = std::max(m_Xmax, p->x);
            m_Ymin = std::min(m_Ymin, p->y);
            m_Ymax = std::max(m_Ymax, p->y);
            prec = p;
        }
        if (m_Points.GetCount() > 2)
            aire.Ajoute(-(p0->x - prec->x) * (prec->y + p0->y) / 2.0);
        else
            aire = prefa_geometrie::SommeExacte(); // an open side or a lone point encloses nothing
    }
    m_Surface = aire.Valeur();
    if (bOriente && Comparer(m_Surface, 0.0, 3) < 0)
    {
        // Reversed, the same terms sum to the opposite area and the extents stay.
        InverseSens();
        m_Surface = -m_Surface;
    }
    m_bDimsValides = 1;
}

void CPolygone::InverseSens()
{
    if (m_Points.GetCount() < 2)
        return;
    // Every node in turn goes to the head: the points themselves are not copied.
    std::vector<CPointD*> points;
    points.reserve((std::size_t)m_Points.GetCount());
    for (POSITION pos = m_Points.GetHeadPosition(); pos;)
        points.push_back(m_Points.GetNext(pos));
    m_Points.RemoveAll();
    for (CPointD* p : points)
        m_Points.AddHead(p);
    m_posCote = nullptr;
    m_pFinCote = nullptr;
    Invalide();
}

CVecteur CPolygone::AvanceCote()
{
    POSITION pos = m_posCote;
    const CPointD* a = m_Points.GetNext(pos);
    if (pos == nullptr)
        pos = m_Points.GetHeadPosition();
    m_posCote = pos;
    m_pFinCote = m_Points.GetAt(pos);
    return CVecteur(*a, *m_pFinCote);
}

CVecteur CPolygone::CotePremier()
{
    if (m_Points.GetCount() < 2)
        AfxThrowInvalidArgException();
    m_posCote = m_Points.GetHeadPosition();
    return AvanceCote();
}

CVecteur CPolygone::CoteSuivant()
{
    if (m_Points.GetCount() < 2)
        AfxThrowInvalidArgException();
    if (m_posCote == nullptr)
        m_posCote = m_Points.GetHeadPosition();
    return AvanceCote();
}

CVecteur CPolygone::CoteDernier()
{
    if (m_Points.GetCount() < 2)
        AfxThrowInvalidArgException();
    m_posCote = m_Points.GetHeadPosition();
    m_pFinCote = m_Points.GetHead();
    return CVecteur(*m_Points.GetTail(), *m_pFinCote);
}

int CPolygone::EstDernierCote() const
{
    return m_posCote != nullptr && m_posCote == m_Points.GetHeadPosition();
}

int CPolygone::EstRectangle()
{
    if (m_Points.GetCount() != 4)
        return 0;
    CVecteur prec = CotePremier();
    do
    {
        CVecteur cote = CoteSuivant();
        // Absolute tolerance on purpose: sections are in metres or centimetres.
        if (std::fabs(prec * cote) > 0.001)
            return 0;
        prec = cote;
    } while (!EstDernierCote());
    return 1;
}

int CPolygone::AppartientAPolygone(const CPointD& p, double d)
{
    if (m_Points.GetCount() < 2)
        return -1;
    Valide();
    // The box margin is twice the offset, deliberately.
    if (p.x > m_Xmax - 2.0 * d || m_Xmin + 2.0 * d > p.x || p.y > m_Ymax - 2.0 * d ||
        m_Ymin + 2.0 * d > p.y)
        return -1;

    // The contour as it is serves when it needs neither cleaning nor offsetting,
    // which spares a copy per call on the thermal grid.
    std::unique_ptr<CPolygone> copie;
    const CPolygone* c = this;
    if (d != 0.0 || PointsIdentiques(0, 0.0))
    {
        copie.reset(new CPolygone(*this));
        copie->PointsIdentiques(1, 0.0);
        if (d != 0.0)
            copie->Decale(d, 0);
        c = copie.get();
    }
    const INT_PTR n = c->GetCount();
    if (n < 2)
        return -1;
    if (n == 2)
    {
        CVecteur v(c->GetPointHead(), c->GetPointTail());
        return v.AppartientAVecteur(p, 1e-10) ? 1 : -1;
    }
    CArray<ptD, ptD> contour;
    contour.Vector().reserve((std::size_t)n);
    int k = 1;
    for (POSITION pos = c->GetHeadPosition(); pos; ++k)
    {
        const CPointD* a = c->m_Points.GetNext(pos);
        const CPointD* b = pos ? c->m_Points.GetAt(pos) : c->m_Points.GetHead();
        if (CVecteur(*a, *b).AppartientAVecteur(p, 1e-10, -1.0))
            return k;
        contour.Add(ptD{a->x, a->y});
    }
    return AppartientAContour(contour, ptD{p.x, p.y});
}

int CPolygone::operator==(const CPolygone& q) const
{
    if (m_Points.GetCount() != q.m_Points.GetCount())
        return 0;
    POSITION a = m_Points.GetHeadPosition(), b = q.m_Points.GetHeadPosition();
    while (a)
    {
        if (!(*m_Points.GetNext(a) == *q.m_Points.GetNext(b)))
            return 0;
    }
    return 1;
}

int CPolygone::Confondu(const CPolygone& q, double tol, int bRecale) const
{
    if (m_Points.GetCount() != q.m_Points.GetCount())
        return 0;
    if (*this == q)
        return 1;
    CPolygone a(*this), b(q);
    if (bRecale)
    {
        CPointD coinA(a.g_Xmin(), a.g_Ymin()), coinB(b.g_Xmin(), b.g_Ymin());
        a.ChangeRepere(0.0, coinA);
        b.ChangeRepere(0.0, coinB);
    }
    std::vector<const CPointD*> pa, pb;
    for (POSITION pos = a.GetHeadPosition(); pos;)
        pa.push_back(a.m_Points.GetNext(pos));
    for (POSITION pos = b.GetHeadPosition(); pos;)
        pb.push_back(b.m_Points.GetNext(pos));
    const std::size_t n = pa.size();
    for (std::size_t depart = 0; depart < n; ++depart)
    {
        std::size_t i = 0;
        while (i < n && pa[(depart + i) % n]->distance_p(*pb[i]) <= tol)
            ++i;
        if (i == n)
            return 1;
    }
    return 0;
}

CPointD CPolygone::DonneCdg()
{
    double Sx = 0.0, Sy = 0.0, S = 0.0;
    if (m_Points.GetCount() < 2)
        return m_Points.IsEmpty() ? CPointD() : CPointD(GetPointHead().x, GetPointHead().y);
    CVecteur cote = CoteDernier();
    std::vector<CVecteur> cotes;
    for (;;)
    {
        cotes.push_back(cote);
        const double x1 = cote.org.x, y1 = cote.org.y, x2 = cote.ext.x, y2 = cote.ext.y;
        const double A = (x1 - x2) * (y1 + y2) / 2.0;
        if (std::fabs(A) > 1e-5)
        {
            Sx += (x1 + (x2 - x1) / 3.0 * (2.0 * y2 + y1) / (y1 + y2)) * A;
            // Mean-height approximation in y, kept on purpose: results are compared
            // with values the suite has stored.
            Sy += (y1 + y2) * A / 4.0;
            S += A;
        }
        cote = CoteSuivant();
        if (EstDernierCote())
        {
            cotes.push_back(cote);
            break;
        }
    }
    // cotes holds the closing side, then every side in order, the closing one last
    // again; drop the repetition.
    cotes.pop_back();
    CPointD centre(Sx / S, Sy / S);

    int signe = 0;
    bool convexe = true;
    for (std::size_t i = 0; i < cotes.size() && convexe; ++i)
    {
        const CVecteur& u = cotes[i];
        const CVecteur& v = cotes[(i + 1) % cotes.size()];
        const double c = u ^ v;
        const int s = c > 1e-10 ? 1 : (c < -1e-10 ? -1 : 0);
        if (i == 0)
            signe = s;
        else if (s != signe)
            convexe = false;
    }
    if (convexe)
        return centre;

    CList<CVecteur, CVecteur&> segments;
    CVecteur ligne(centre, CPointD(centre.x + 1.0, centre.y));
    IntersectionPolygoneVecteur(ligne, &segments, 0);
    double plusLong = -1.0;
    CPointD milieu = centre;
    for (POSITION pos = segments.GetHeadPosition(); pos;)
    {
        const CVecteur& s = segments.GetNext(pos);
        if (s.longueur() > plusLong)
        {
            plusLong = s.longueur();
            milieu = s.PointCentre();
        }
    }
    return CPointD(milieu.x, milieu.y);
}

void CPolygone::rotation(const CPointD& c, double a)
{
    for (POSITION pos = m_Points.GetHeadPosition(); pos;)
        m_Points.GetNext(pos)->rotation(c, a);
    Invalide();
}

void CPolygone::translation(const CPointD& a, const CPointD& b)
{
    for (POSITION pos = m_Points.GetHeadPosition(); pos;)
        m_Points.GetNext(pos)->translation(a, b);
    Invalide();
}

void CPolygone::translation(const CVecteur& v)
{
    for (POSITION pos = m_Points.GetHeadPosition(); pos;)
        m_Points.GetNext(pos)->translation(v);
    Invalide();
}

void CPolygone::ChangeRepere(double a, const CPointD& o)
{
    const CPointD origine(o); // o may be one of this polygon's own points
    for (POSITION pos = m_Points.GetHeadPosition(); pos;)
        m_Points.GetNext(pos)->ChangeRepere(a, origine);
    Invalide();
}

void CPolygone::L_POINTEnPolygone(const l2ch_descrip* liste)
{
    if (liste == nullptr)
        return;
    Delete();
    for (const L_POINT* n = liste->tete; n; n = n->suivant)
        AddTail(n->x, n->y);
}

void CPolygone::PolygoneEnL_POINT(l2ch_descrip* liste) const
{
    if (liste == nullptr)
        return;
    for (POSITION pos = m_Points.GetHeadPosition(); pos;)
    {
        const CPointD* p = m_Points.GetNext(pos);
        if (l2ch_AjouteQueue(liste, p->x, p->y) == nullptr)
            AfxThrowMemoryException();
    }
}

void CPolygone::PolygoneEnArrayPOINTD(CArray<ptD, ptD>& tab) const
{
    for (POSITION pos = m_Points.GetHeadPosition(); pos;)
    {
        const CPointD* p = m_Points.GetNext(pos);
        tab.Add(ptD{p->x, p->y});
    }
}

void CPolygone::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        ar << (LONG)m_Points.GetCount();
        for (POSITION pos = m_Points.GetHeadPosition(); pos;)
            m_Points.GetNext(pos)->Serialize(ar);
    }
    else
    {
        LONG n = 0;
        ar >> n;
        if (n < 1)
            return;
        // A hostile count fails here, before anything is allocated for it.
        ar.CheckAvailable((ULONGLONG)n, 16);
        for (LONG i = 0; i < n; ++i)
        {
            std::unique_ptr<CPointD> p(new CPointD);
            p->Serialize(ar);
            AddTail(p.release());
        }
    }
}

void CPolygone::Trace(int n) const
{
    int i = 0;
    for (POSITION pos = m_Points.GetHeadPosition(); pos; ++i)
    {
        const CPointD* p = m_Points.GetNext(pos);
        std::fprintf(stderr, "%*sPOINT : %d %lf, %lf - %p\n", n, "", i, p->x, p->y, (const void*)p);
    }
}
