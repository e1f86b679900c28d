// prefa: the shared engineering library of the precast concrete suite.
// One include for every public header of the core.
#pragma once

#define PREFA_VERSION_MAJOR 0
#define PREFA_VERSION_MINOR 1
#define PREFA_VERSION_PATCH 0
#define PREFA_VERSION_STRING "0.1.0"

#include "framework/Framework.h"

#include "project/Environnement.h"
#include "project/FichiersEtudes.h"
#include "project/MessErreur.h"

// geometry
#include "geometry/CPolygone.h"
#include "geometry/CListePolygone.h"
#include "geometry/CPointD.h"
#include "geometry/CVecteur.h"
#include "geometry/CRepere.h"
#include "geometry/ContenantsEtrangers.h"
#include "geometry/Routines.h"

// section
#include "section/CSectionGenerale.h"
#include "section/CProprietesSection.h"

// thermal
#include "thermal/CArrayEx.h"
#include "thermal/CTemperatureGenerale.h"
#include "thermal/BilanThermique.h"
#include "thermal/GrilleBilan.h"
#include "thermal/ProprietesEC2.h"
#include "thermal/ProprietesFlamme.h"
#include "thermal/CCourbeFeu.h"
#include "thermal/CCourbeFeuParametrique.h"
#include "thermal/CCourbeFeuTable.h"
#include "thermal/ExpositionFaces.h"

// project records
#include "project/CAffaire.h"
#include "project/CInfoModifications.h"
#include "project/CInfoPlan.h"
#include "project/CConfigBRAXEL.h"
#include "project/Verrous.h"

// zip packaging
#include "zip/CExceptionZip.h"
#include "zip/CArchiveZip.h"
#include "zip/PaquetAffaire.h"
