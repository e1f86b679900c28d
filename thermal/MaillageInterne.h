// The steps of building the thermal mesh (CTemperatureGenerale::InitTableDonnees), each
// in the file named after what it holds: the cell side (MaillagePas.cpp), the cell codes
// (MaillageCodes.cpp), the index lists and working values (MaillageListes.cpp); the grid
// itself is laid out in MaillageThermique.cpp.
#pragma once

#include "geometry/CPointD.h"
#include "geometry/CPolygone.h"

#include <vector>

class CTemperatureGenerale;

namespace prefa_maillage
{
// Codes of the probe, before conversion.
constexpr double CODE_BETON = 11.0;
constexpr double CODE_CAVITE = 0.0;
constexpr double CODE_DEHORS = 1.0;
constexpr double CODE_NON_EXPOSE = 2.0;

// What a probe looks into: the section and the caller's zones, in the caller's order
// (a later material or cavity wins over an earlier one).
struct Zones
{
    CPolygone* section = nullptr;
    std::vector<CPolygone*> cavites, materiaux, zonesHumides;
};

// Cell side derived from the section's sides, when the caller gives none.
double PasDesCotes(CPolygone& section);

// The code of the cell whose centre is p (section coordinates).
double CodeCellule(const CPointD& p, const Zones& zones);
// Outside cells above the topmost non-outside cell of their column face away from the
// fire. Rows are top first.
void MarqueNonExpose(std::vector<std::vector<double>>& codes);
// The final code of a probed cell.
double Convertit(double code, double codeNonExpose);

// From the grids in place: the shape, the DTU method's index lists and active zone
// (dtu), and the concrete's constants, into the working blocks.
void RemplitListesEtTravail(CTemperatureGenerale& t, bool dtu);
} // namespace prefa_maillage
