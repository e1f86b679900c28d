// The fire calculation of the command: the library's mesh with the faces exposed, one of
// its four methods run once to the longest duration, and the bar temperatures read with
// its point lookup in the field of each duration asked and of each time of the history.
#pragma once

#include "Entree.h"

#include <prefa.h>

#include <functional>

namespace prefa_cli
{

struct FireResult
{
    std::vector<double> durations;             // hours
    std::vector<std::vector<double>> barTemps; // [bar][duration], degrees Celsius (DTU: rises)
    std::vector<double> historyMinutes;        // times of the history
    std::vector<std::vector<double>> history;  // [bar][time]
    double initial = 20;                       // every temperature at the start (DTU: 0, a rise)
    bool rises = false;                        // DTU: values are rises above ambient
    double criterion140 = 0, criterion180 = 0; // DTU: minutes, 1300.0 when not reached
    ScalarGrid field;                          // the field of the last duration listed, section frame
    double cell = 0;
    bool cancelled = false;
};

// Reports the fraction done and a label; returning false cancels the calculation.
typedef std::function<bool(double fraction, const std::string& label)> ProgressFn;

CPolygone ToPolygone(const Contour& c);

// Point of the library's lookup frame for a point of the section. Grid methods count
// their columns from m_dXOrigine: the command sets that origin to half the grid's
// width, so that the lookup frame's x is measured from the section's centre line.
Point2 LookupPoint(const CTemperatureGenerale& t, const Contour& outline, Point2 p);
// Centre of cell (i, j) in the section's coordinates.
Point2 CellCentre(const CTemperatureGenerale& t, const Contour& outline, int i, int j);
// Meshes the section for the method and duration, with the input's exposure (the first
// step of RunFire).
void Mesh(CTemperatureGenerale& t, const FireInput& in, double duration);
// Runs the method on a meshed field; false when cancelled through the callback.
bool Compute(CTemperatureGenerale& t, const FireInput& in, double duration);

// The times of a history every `every` minutes up to the longest duration (hours), which
// ends it when it is not a multiple.
std::vector<double> HistoryTimes(double every, double longestHours);

// One run of the method to the longest duration; the durations' fields and the history's
// are each the field that a run of that duration alone would give.
FireResult RunFire(const FireInput& in, const std::vector<double>& historyMinutes, const ProgressFn& progress);

} // namespace prefa_cli
