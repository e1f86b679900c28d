// A point of the plane with double coordinates, plus a free marker and two attached
// values that callers use while processing contours (a temperature, a parameter
// along a contour...). Only x and y are stored by Serialize.
#pragma once

#include "framework/Framework.h"

#include <cfloat>

class CVecteur;
class CRepere;

class CPointD : public CObject
{
    DECLARE_SERIAL(CPointD)
public:
    CPointD();
    CPointD(double x, double y, bool marque = false, double valeur1 = -DBL_MAX,
            double valeur2 = -DBL_MAX);
    CPointD(const CPointD& p);
    // Device point to plane point, as LPtoPC(p, scale, v).
    CPointD(CPoint p, const CVecteur& v, double scale);
    // Device point to plane point, as LPtoPC(p, r).
    CPointD(CPoint p, const CRepere& r);
    ~CPointD() override;

    CPointD& operator=(const CPointD& p);

    void s_xy(double x, double y);
    double longueur() const;
    // Polar angle of (x, y) in degrees, in [0, 360).
    double angle() const;
    // x = r cos a, y = r sin a (a in degrees).
    void cartesien(double r, double a);
    double distance_p(const CPointD& p) const;
    // 1 when the distance to p is <= tol.
    int Identique(const CPointD& p, double tol) const;
    // 1 when both coordinates differ by strictly less than 1e-10.
    int operator==(const CPointD& p) const;
    int operator!=(const CPointD& p) const { return !(*this == p); }

    // Adds b - a; returns the length of the move.
    double translation(const CPointD& a, const CPointD& b);
    // Adds v's direction; returns v's length.
    double translation(const CVecteur& v);
    // Counter-clockwise rotation of a degrees about c; returns the distance to c.
    double rotation(const CPointD& c, double a);
    // Homothety of centre c and ratio k.
    void echelle(const CPointD& c, double k);
    // Coordinates in the frame of origin o turned by a degrees.
    void ChangeRepere(double a, const CPointD& o);

    // Plane to device and back through a scale and an offset vector (Y flipped).
    // Device coordinates are rounded half away from zero and clamped to the 32-bit
    // range (NaN gives 0).
    CPoint PCtoLP(double scale, const CVecteur& v) const;
    void LPtoPC(CPoint p, double scale, const CVecteur& v);
    // Plane to device and back through a frame. Both apply the frame's rotation in
    // the same sense and neither flips Y: callers rely on this asymmetry.
    CPoint PCtoLP(const CRepere& r) const;
    void LPtoPC(CPoint p, const CRepere& r);

    // x then y, 8-byte doubles.
    void Serialize(CArchive& ar) override;

    double x;
    double y;
    bool marque;
    double valeur1;
    double valeur2;
};
