// prefa's window layer on Qt 5 Widgets and the editable grid list: one include for
// every public header of the ui library (link prefa::ui).
#pragma once

#include "prefa.h"

#include "ui/CommCtrl.h"
#include "ui/CWnd.h"
#include "ui/CDC.h"
#include "ui/CEdit.h"
#include "ui/CComboBox.h"
#include "ui/CHeaderCtrl.h"
#include "ui/CListCtrl.h"
#include "ui/CListCtrlToolTip.h"
#include "ui/CHeaderCtrlExt.h"
#include "ui/CListCtrlExt.h"
