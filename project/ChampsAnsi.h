// Narrow text fields of the fixed-width exchange records (the project exchange
// record, the lock record, the older drawing file): texts in the ANSI code page,
// copied with a bounded copy into a zero-filled field.
#pragma once

#include "framework/Framework.h"

#include <cstddef>

// Converts the text to the ANSI code page and copies at most nLargeur bytes of it to
// pChamp. A text of full width gets no terminator: the field is expected to be zeroed
// beforehand, and the byte after it belongs to the caller's layout.
void CopieChampAnsi(BYTE* pChamp, std::size_t nLargeur, const CString& texte);

// The text of a field: its bytes up to the first zero or to nLargeur, whichever comes
// first, converted from the ANSI code page.
CString LitChampAnsi(const BYTE* pChamp, std::size_t nLargeur);
