// An oriented segment from org to ext, also used as a free vector (its direction
// ext - org) and as an infinite line. Angles are in degrees.
//
// operator+ and operator- modify their left operand exactly like += and -=; the
// suite's programs rely on it.
#pragma once

#include "geometry/CPointD.h"

class CVecteur : public CObject
{
    DECLARE_SERIAL(CVecteur)
public:
    CVecteur();
    CVecteur(const CVecteur& v);
    CVecteur(const CPointD& a, const CPointD& b);
    CVecteur(double x1, double y1, double x2, double y2);
    // Device points divided by scale; both ends stay (0,0) when scale <= 1e-10.
    CVecteur(CPoint a, CPoint b, double scale);
    ~CVecteur() override;

    CVecteur& operator=(const CVecteur& v);

    void s_coord_vect(double x1, double y1, double x2, double y2);
    // Safe when a and b are this vector's own ext and org.
    void s_coord_vect(const CPointD& a, const CPointD& b);
    void s_coord_vect(const CPointD& a, double dx, double dy);
    void s_coord_cart(const CPointD& a, double r, double angle);

    void s_org(const CPointD& p) { org = p; }
    void s_ext(const CPointD& p) { ext = p; }
    void s_org_x(double v) { org.x = v; }
    void s_org_y(double v) { org.y = v; }
    void s_ext_x(double v) { ext.x = v; }
    void s_ext_y(double v) { ext.y = v; }
    CPointD g_org() const { return org; }
    CPointD g_ext() const { return ext; }
    double g_org_x() const { return org.x; }
    double g_org_y() const { return org.y; }
    double g_ext_x() const { return ext.x; }
    double g_ext_y() const { return ext.y; }
    double dx() const { return ext.x - org.x; }
    double dy() const { return ext.y - org.y; }

    double longueur() const;
    // Direction angle: mode 0 in [0, 360), mode 1 in (-90, 270].
    double angle_d(int mode = 0) const;
    // angle_d(w) - angle_d(this) in [0, 360]; mode 0 subtracts 360.
    double AngleEntreVecteur(const CVecteur& w, int mode) const;

    double translation(const CPointD& a, const CPointD& b);
    double translation(const CVecteur& v);
    // Returns the distance from c to the new origin.
    double rotation(const CPointD& c, double a);
    void echelle(const CPointD& c, double k);
    // Returns the image of the plane origin under the same change of frame.
    CPointD ChangeRepere(double a, const CPointD& o);

    CPointD PointCentre() const;
    // Abscissa where the line crosses ordinate y; 1e10 when it does not.
    double g_x(double y) const;
    // Ordinate where the line crosses abscissa x; 1e10 when it does not.
    double g_y(double x) const;
    // 1 p1 on the line, 2 p2 on the line, 0 same side, -1 opposite sides.
    int AppartientPlan(const CPointD& p1, const CPointD& p2) const;

    // Newton constructions (start (-500, 1000), at most 100 steps, stop at 1e-15,
    // components below 1e-9 snapped to 0); (0,0) on a singular step.
    // Components of a vector of length L perpendicular to this one, on its left.
    CPointD VecteurOrthogonal(double L) const;
    // Components of a vector of length L with this direction and sense. There is no
    // special start here: a direction with dx = 2 dy makes the first step singular
    // and gives (0,0), as the reference construction does.
    CPointD VecteurColineaire(double L) const;
    // Foot of the perpendicular from p on the infinite line; arrondi non-zero snaps
    // coordinates below 1e-9 to 0.
    CPointD PointProjeteOrtho(const CPointD& p, int arrondi) const;

    // Moves the segment sideways by d (positive to the left of the direction).
    void Decalage(double d);
    // Copy moved sideways by d towards p.
    CVecteur VecteurParallele(double d, const CPointD& p) const;
    // Slides both ends towards p by d (away when d, or sens, is negative).
    void DecalageCorde(const CPointD& p, double d, int sens);

    double DistanceProjete(const CPointD& p) const;
    double DistanceProjete(double r, double angle) const;
    // Point-on-segment test; tol -1.0 means 1e-10.
    int AppartientAVecteur(const CPointD& p, double tolLong, double tol = -1.0) const;
    // Crossing of the two lines by Donne_Intersection; its code goes to *trouve
    // (when not null); (0,0) when there is none.
    CPointD Intersection(const CVecteur& w, double tol, int* trouve) const;
    // Overlap of two (nearly) collinear segments; 1 when found (result untouched
    // otherwise). angleTol is in degrees; tolA is the distance allowed beyond an end
    // and tolB the on-line tolerance of AppartientAVecteur (-1.0 meaning 1e-10).
    int VecteurIntersection(const CVecteur& w, CVecteur* result, int bPoint = 0,
                            double angleTol = 0.0, double tolA = 1e-10,
                            double tolB = -1.0) const;
    // Union of two nearly collinear overlapping segments; 1 when found. Each end of
    // the union is this vector's, unless the overlap starts (ends) at this vector's
    // own end, where the other segment reaches further and gives it.
    int VecteurUnion(const CVecteur& w, CVecteur* result, double tol) const;

    // Extremity moved by +/- w's direction; return a copy.
    CVecteur operator+=(const CVecteur& w);
    CVecteur operator-=(const CVecteur& w);
    // Same as += and -=: the left operand is modified too (deliberate).
    CVecteur operator+(const CVecteur& w);
    CVecteur operator-(const CVecteur& w);
    // Both points multiplied by k about (0,0).
    CVecteur operator*=(double k);
    // Dot product of the directions.
    double operator*(const CVecteur& w) const;
    // Cross product dx dyw - dxw dy.
    double operator^(const CVecteur& w) const;
    // All four coordinates within 1e-10 (strict).
    int operator==(const CVecteur& w) const;
    int operator!=(const CVecteur& w) const { return !(*this == w); }
    // Both ends within tol (inclusive).
    int Identique(const CVecteur& w, double tol) const;

    // org.x, org.y, ext.x, ext.y as 8-byte doubles.
    void Serialize(CArchive& ar) override;
    // Debug listing of the coordinates on standard error, indented by n.
    void Trace(int n = 0) const;

    CPointD org;
    CPointD ext;
};
