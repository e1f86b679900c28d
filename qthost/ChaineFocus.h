// The tab chain of a window as Qt walks it, to tell when Tab would leave the widgets of
// an embedded window rather than wrap round to the first. Internal to the hosting library.
#pragma once

class QWidget;

namespace prefa_qthost_detail
{

// The widget that Tab (bSuivant) or Shift+Tab gives the focus to from pDepuis inside
// pFenetre, with Qt's own rules (focus policy, focus proxies, hidden and disabled
// widgets skipped); *pbTour tells whether that move goes round the end of the chain.
// Null when no other widget takes the focus. From pFenetre itself, Tab gives the first
// widget of the chain and Shift+Tab the last.
QWidget* ProchainFocus(QWidget* pFenetre, QWidget* pDepuis, bool bSuivant, bool* pbTour);

} // namespace prefa_qthost_detail
