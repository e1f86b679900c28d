// A drawing frame: how plane coordinates map to device units. Each axis has its
// own rotation so that a frame can shear; the scale is device units per plane unit
// and is 0 by default, so a frame must be initialised before any conversion.
#pragma once

#include "geometry/CVecteur.h"

class CRepere : public CObject
{
    DECLARE_SERIAL(CRepere)
public:
    CRepere();
    CRepere(const CPointD& origin, double rotx, double roty, const CVecteur& diagonale,
            double echelle);
    CRepere(const CRepere& r);
    ~CRepere() override;
    CRepere& operator=(const CRepere& r);

    void InitRepere(const CPointD& origin, double rotx, double roty,
                    const CVecteur& diagonale, double echelle);
    void SetOrg(const CPointD& p) { origin = p; }
    void SetRotx(double a) { rotx = a; }
    void SetRoty(double a) { roty = a; }
    void SetRot(double a) { rotx = roty = a; }
    void SetEchelle(double e) { Echelle = e; }
    void SetDiagonale(const CVecteur& v) { Diagonale = v; }
    CPointD GetOrigine() const { return origin; }
    double GetEchelle() const { return Echelle; }
    CVecteur GetDiagonale() const { return Diagonale; }
    double GetRotx() const { return rotx; }
    double GetRoty() const { return roty; }
    // An angle measured in the frame turned into a plane angle.
    double GetAngle(double a) const { return a + rotx; }

    // rotx, roty, Echelle, origin (x, y), Diagonale (org.x, org.y, ext.x, ext.y):
    // nine doubles, 72 bytes.
    void Serialize(CArchive& ar) override;

    CPointD origin;
    double rotx;
    double roty;
    CVecteur Diagonale;
    double Echelle;
};
