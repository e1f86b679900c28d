// Qt inside a host program's own windows and event loop: one include for the public
// headers of the hosting library (link prefa::qthost).
#pragma once

#include "prefa_ui.h"

#include "qthost/CQtHote.h"
#include "qthost/CIncrustation.h"
