// Delivery of the fields that CTemperatureGenerale::m_Releve asks for, from the steps of
// one run: each duration's field is handed over at the step where a run of that duration
// alone would stop.
#pragma once

#include "thermal/BilanThermique.h"
#include "thermal/CTemperatureGenerale.h"

#include <vector>

// Indices of the durations in increasing order; durations that are negative or not a
// number are left out (never delivered).
std::vector<std::size_t> OrdreReleves(const std::vector<double>& durees);

// The kernel observer of a grid method: after pas steps of dt hours it hands m_Releve
// the durations whose step count (the laws' NombrePas) is pas. A restart (pas back to 0)
// starts the deliveries again. Empty when the field has no receiver.
std::function<void(long long, double, const double*)> ObservateurReleves(const CTemperatureGenerale& t,
                                                                         const LoisThermiques& lois);
