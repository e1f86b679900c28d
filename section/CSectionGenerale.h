// Geometric properties of a cross-section described by contours: areas, static
// moments, second moments about the axes, about the centroid and about the
// principal axes, the principal angle (radians) and the perimeters.
//
// The first list holds the section's contours; the second list's contours are
// integrated afterwards into the same sums with their own orientation (an opening
// given clockwise is subtracted). The fields are integrated side by side as
// trapezoid strips; the working terms of the last strip stay in the object, in their
// place in the field order, because the section file stores them.
//
// File "SECTION.nn" of a study folder: a 32-bit version (1) then the 23 fields as
// doubles in field order except that SX is written before SY.
//
// Kept as the suite's files and programs expect it, though not exact far from the
// origin, for IxyG with sloping sides, nor for I1, I2 when IxG equals IyG:
// CProprietesSection gives the exact values.
#pragma once

#include "geometry/CListePolygone.h"

class CSectionGenerale : public CObject
{
    DECLARE_SERIAL(CSectionGenerale)
public:
    CSectionGenerale();
    CSectionGenerale(const CSectionGenerale& s);
    CSectionGenerale& operator=(const CSectionGenerale& s);
    ~CSectionGenerale() override;

    void InitVariables();
    void CopySectionGenerale(const CSectionGenerale& s);

    void CaracteristiquesSectionsPolygone(CListePolygone& l1, CListePolygone& l2);

    void Serialize(CArchive& ar) override;
    // Loads from <root>/<fichier>/SECTION.nn; a file that cannot be opened leaves
    // the object as it was. 1 when loaded, 0 otherwise.
    int Lecture(CString fichier, int n);
    // Saves to <root>/<fichier>/SECTION.nn through a mirror file, so a failed save
    // keeps the previous file; a failure is reported by MessErreur ("IDENTERR_2066").
    // 1 when saved, 0 otherwise.
    int Ecriture(CString fichier, int n);

    double aireX;
    double aireY;
    double Aire;
    double AireY;
    double SY;
    double SX;
    double IyO;
    double IxO;
    double IxyO;
    double iyStrip;
    double ixStrip;
    double xgStrip;
    double ygTerme;
    double ygStrip;
    double IxG;
    double IyG;
    double IxyG;
    double Angle;
    double I1;
    double I2;
    double Perimetre;
    double Perimetre1;
    double Perimetre2;

private:
    // Adds the sides of every contour of l into the running sums.
    void IntegreContours(CListePolygone& l);
    // Centroidal and principal values from the sums; seuil is the relative
    // difference of the two centroidal moments below which the angle is 0.
    void CalculeCentre(double seuil);
};
