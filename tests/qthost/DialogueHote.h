// The host's one Qt dialog, kept out of its main: a bar's name, asked modally over the
// host's window.
#pragma once

#include <string>

// The hosting's code (QTHOTE_OK when the dialog was shown), the dialog's result in
// nResultat and the name typed in nom.
int DemandeNomBarre(unsigned long fenetreHote, int& nResultat, std::wstring& nom);
