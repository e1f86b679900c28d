// The framework's device context, as far as list drawing needs it, over a QPainter that
// the caller owns for the duration of a paint.
#pragma once

#include "framework/CRect.h"
#include "framework/CString.h"

#include <QColor>

class QPainter;

// A colour reference (0x00BBGGRR) as a Qt colour, and back.
QColor QColorDe(COLORREF cr);
COLORREF ColorRefDe(const QColor& c);

class CDC
{
public:
    explicit CDC(QPainter* pPainter) : m_pPainter(pPainter) {}
    QPainter* GetPainter() const { return m_pPainter; }

    void FillSolidRect(LPCRECT lpRect, COLORREF clr);
    // A dotted rectangle just inside lpRect, as the platform marks the focus.
    void DrawFocusRect(LPCRECT lpRect);
    COLORREF SetTextColor(COLORREF clr);
    COLORREF SetBkColor(COLORREF clr);
    // The text in the current text colour, clipped to the rectangle, vertically centred;
    // nFormat takes DT_LEFT, DT_CENTER or DT_RIGHT, and DT_END_ELLIPSIS to elide.
    void DrawText(const CString& str, LPCRECT lpRect, UINT nFormat);
    CSize GetTextExtent(const CString& str) const;

private:
    QPainter* m_pPainter;
    COLORREF m_clrTexte = 0;
    COLORREF m_clrFond = 0xFFFFFF;
};
