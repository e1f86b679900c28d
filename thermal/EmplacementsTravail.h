// The slots of the three working blocks of CTemperatureGenerale (m_dTravailA,
// m_nTravail, m_dTravailB), 0-based, named once so that the mesh, the methods, the
// callers and the tests read and write the same slot under the same name. The blocks
// are stored as they stand in the study file, so a slot never moves.
//
// Most slots belong to the DTU method; the grid methods reuse a few of them with the
// same meaning (the step, the mean exposed-face temperature, the largest unexposed-face
// temperature), and the mesh fills the concrete's constants.
#pragma once

namespace TravailA
{
enum Emplacement : int
{
    T140 = 0,         // DTU: minutes until the mean unexposed rise reached 140 (1300 never)
    T180 = 1,         // DTU: minutes until the highest unexposed-face rise reached 180
    MOY_NONEXPO = 2,  // DTU: mean unexposed-face rise of the last step
    MOY_140 = 3,      // DTU: the mean recorded with T140
    MOY_EXPO = 4,     // mean exposed-face rise (DTU) or temperature (grid methods)
    H = 5,            // DTU: exposed-face coefficient h of the step
    FEU = 6,          // DTU: fire rise of the step
    LAMBDA = 7,       // conductivity of the concrete, kcal/(h m C)
    FACTEUR_FEU = 8,  // DTU: gas rise over fire rise, for the radiation
    RHO = 9,          // density of the concrete, kg/m3
    C = 10,           // specific heat of the concrete, kcal/(kg C)
    TAILLE = 11
};
} // namespace TravailA

namespace TravailN
{
enum Emplacement : int
{
    SAUTES = 0,         // DTU: nodes skipped in the step
    NOEUDS = 1,         // DTU: section nodes of the index lists
    FACE_EXPO = 2,      // DTU: exposed-face nodes updated in the step
    FACE_NONEXPO = 3,   // DTU: unexposed-face nodes updated in the step
    COTE_EXPO = 4,      // DTU: exposed-side interior nodes summed in the step
    COTE_NONEXPO = 5,   // DTU: unexposed-side interior nodes summed in the step
    NB_LIGNES = 6,      // rows of the grid
    NB_COLONNES = 7,    // columns of the grid
    DERNIERE_COL = 8,   // DTU: last column swept
    ZONE_LIGNE_DEBUT = 9, // DTU active zone: first row,
    ZONE_LIGNE_FIN = 10,  // last row,
    ZONE_COL_DEBUT = 11,  // first column,
    ZONE_COL_FIN = 12,    // last column (1-based)
    COMPTE = 13,        // a count the mesh sets to 1
    TAILLE = 14
};
} // namespace TravailN

namespace TravailB
{
enum Emplacement : int
{
    MOY_NONEXPO = 0,      // grid methods: mean unexposed-face temperature
    P = 1,                // DTU: the neighbour that decides a face's kind
    HP = 2,               // DTU: unexposed-face coefficient h'
    LAMBDA = 3,           // conductivity used by the step (grid methods: at the exposed mean)
    DT = 4,               // time step in hours (grid methods), elapsed minutes (DTU)
    DELX = 5,             // cell side, metres
    A = 6,                // DTU: first neighbour of a face node
    B = 7,                // DTU: second neighbour of a face node
    SOMME_FACES = 8,      // DTU sums of the step: every face node,
    SOMME_NONEXPO = 9,    // the unexposed-face nodes,
    SOMME_EXPO = 10,      // the exposed-face nodes,
    SOMME_INT = 11,       // the interior nodes,
    SOMME_COTE_NONEXPO = 12, // the unexposed-side interior nodes,
    SOMME_COTE_EXPO = 13, // the exposed-side interior nodes
    MAX_SURFACE = 14,     // highest unexposed-face value of the run
    MAX_180 = 15,         // DTU: the highest value recorded with T180
    MIN_COTES = 16,       // DTU: smallest side neighbour of the node in hand
    MIN_DIAG = 17,        // DTU: smallest diagonal neighbour
    TAILLE = 18
};
} // namespace TravailB
