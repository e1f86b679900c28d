#include "CDC.h"

#include <QFontMetrics>
#include <QPainter>

QColor QColorDe(COLORREF cr)
{
    return QColor(GetRValue(cr), GetGValue(cr), GetBValue(cr));
}

COLORREF ColorRefDe(const QColor& c)
{
    return RGB(c.red(), c.green(), c.blue());
}

void CDC::FillSolidRect(LPCRECT lpRect, COLORREF clr)
{
    m_pPainter->fillRect(QRect(lpRect->left, lpRect->top, lpRect->right - lpRect->left, lpRect->bottom - lpRect->top),
                         QColorDe(clr));
}

void CDC::DrawFocusRect(LPCRECT lpRect)
{
    CRect r(*lpRect);
    if (r.IsRectEmpty())
        return;
    m_pPainter->save();
    QPen pen(Qt::black, 1, Qt::DotLine);
    pen.setCosmetic(true);
    m_pPainter->setPen(pen);
    m_pPainter->setBrush(Qt::NoBrush);
    m_pPainter->drawRect(QRect(r.left, r.top, r.Width() - 1, r.Height() - 1));
    m_pPainter->restore();
}

COLORREF CDC::SetTextColor(COLORREF clr)
{
    COLORREF avant = m_clrTexte;
    m_clrTexte = clr;
    return avant;
}

COLORREF CDC::SetBkColor(COLORREF clr)
{
    COLORREF avant = m_clrFond;
    m_clrFond = clr;
    return avant;
}

void CDC::DrawText(const CString& str, LPCRECT lpRect, UINT nFormat)
{
    QRect r(lpRect->left, lpRect->top, lpRect->right - lpRect->left, lpRect->bottom - lpRect->top);
    QString texte = QString::fromWCharArray(str.GetString(), str.GetLength());
    if (nFormat & DT_END_ELLIPSIS)
        texte = m_pPainter->fontMetrics().elidedText(texte, Qt::ElideRight, r.width());
    int h = (nFormat & DT_RIGHT) ? Qt::AlignRight : (nFormat & DT_CENTER) ? Qt::AlignHCenter : Qt::AlignLeft;
    m_pPainter->save();
    m_pPainter->setPen(QColorDe(m_clrTexte));
    m_pPainter->setClipRect(r, Qt::IntersectClip);
    m_pPainter->drawText(r, h | Qt::AlignVCenter | Qt::TextSingleLine, texte);
    m_pPainter->restore();
}

CSize CDC::GetTextExtent(const CString& str) const
{
    QFontMetrics fm = m_pPainter->fontMetrics();
    QString texte = QString::fromWCharArray(str.GetString(), str.GetLength());
    return CSize(fm.horizontalAdvance(texte), fm.height());
}
