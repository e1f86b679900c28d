// The environment record: where the suite's data lives (the data root) and whether
// several workstations share it (the multi-user switch).
//
// It is a small UTF-8 text file of "key = value" lines, found through the
// environment variable PREFA_ENV:
//     data_root = /srv/prefa/data
//     multi_user = 1
// Blank lines and lines starting with '#' are ignored. Without PREFA_ENV the data
// root is the current directory and multi-user is off. A program may also set both
// through DefinitEnvironnement, which then takes precedence over the file.
#pragma once

#include "framework/Framework.h"

struct CEnvironnement
{
    int nMultiUtilisateur = 0; // the record's first field: the multi-user switch
    CString strRacine;         // the data root ("." when none is given)
};

// Fills env from the program's settings or the record file. Returns 1 when the
// settings came from DefinitEnvironnement or a readable record, 0 when the defaults
// were used (no PREFA_ENV, or a record that cannot be read).
int Lecture_Environ_Nom(CEnvironnement& env);

// Sets the data root and the multi-user switch for this process, overriding PREFA_ENV.
void DefinitEnvironnement(LPCTSTR lpszRacine, int nMultiUtilisateur);
// Forgets what DefinitEnvironnement set: the record file (or the defaults) applies again.
void AnnuleDefinitionEnvironnement();
