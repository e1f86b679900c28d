// Exposure of a section's faces for the grid methods (ITBTP, ZOLT, Eurocode 2): a beam
// under a slab heated on three sides, a slab from below, a wall from one side. The
// exposure is written into the outside cells of the grid built by InitTableDonnees, as
// the codes the methods read: -1 fire-side gas, -2 unexposed-side air.
//
// Each outside cell (code -1 or -2, in m_Masque and m_T1) takes the code of the side of
// the outline nearest to its centre: -1 when that side is exposed, -2 when it is not.
// Where an exposed and an unexposed side are equally near (a cell in a re-entrant corner
// touches both), the exposed one wins. Cells of the section, its cavities and zones keep
// their codes, and so does everything else of the field.
//
// The Eurocode 2 method's exchanges are cell by cell, so a face far from the others
// behaves as alone (the middle of a wide slab heated from below is the one-dimensional
// case). The ITBTP and ZOLT methods set their fire and air coefficients from the mean
// temperatures of all exposed and all unexposed faces, so every face feels the others.
#pragma once

#include "thermal/CTemperatureGenerale.h"

#include <vector>

// section: the outline given to InitTableDonnees, in the same coordinates; exposee[k]
// for side k, from point k to point k + 1 (0-based, the last side closes the outline).
// Returns 1; 0 with nothing changed when the field is the DTU method's (its slab model
// is heated from below, unexposed on top, by construction), has no grid, or exposee does
// not hold one value per side.
int ExposerFaces(CTemperatureGenerale& t, CPolygone& section, const std::vector<bool>& exposee);
