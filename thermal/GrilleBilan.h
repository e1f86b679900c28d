// Runs the cell-balance kernel on a temperature field's marker grid and copies the
// temperatures back: the common frame of the grid methods.
#pragma once

#include "thermal/BilanThermique.h"
#include "thermal/CTemperatureGenerale.h"

struct ResultatGrille
{
    StatistiquesBilan stats;
    ResultatsFaces faces;
};

// Sets NbLignes and NbColonnes from m_Masque (rows, length of row 0; every row must be
// that long, else the invalid-argument exception), runs the fire with the laws, reports
// progress through the field's callback, and leaves the temperatures in m_T1. delta is
// the cell side the method computes with. A run that held a NaN or left the range of its
// boundary temperatures (stats.horsBornes) leaves -1.0, "no value", in every cell of m_T1
// rather than a wrong field.
ResultatGrille CalculerSurGrille(CTemperatureGenerale& t, const LoisThermiques& lois, double delta, double duree,
                                 double dt);

// Figures of the last grid method run on the calling thread (steps, restarts, threads,
// and whether its field went out of range).
StatistiquesBilan DernieresStatistiquesBilan();

// During a progress call of a grid method (m_Progression): the kernel that runs it, whose
// ChampEnCours() is the field reached so far, with the grid's rows and columns. Null at
// any other time.
const BilanThermique* BilanEnCours();

// Cell side as the Eurocode 2 method keeps it: a single-precision float.
inline double LargeurMaille(double delx) { return (double)(float)delx; }
