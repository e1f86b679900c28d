// The portable subset of the application framework that the library is written
// against: one include for everything it holds.
#pragma once

#include "Types.h"
#include "CObject.h"
#include "CString.h"
#include "CodePage.h"
#include "CException.h"
#include "CFile.h"
#include "CArchive.h"
#include "CArray.h"
#include "CList.h"
#include "CObList.h"
#include "CStringArray.h"
#include "CStringList.h"
#include "CPoint.h"
#include "CRect.h"
#include "WinUser.h"
#include "CFileFind.h"
#include "Time64.h"
#include "CTime.h"
#include "MessageBox.h"
#include "System.h"
