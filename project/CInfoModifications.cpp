#include "project/CInfoModifications.h"

IMPLEMENT_DYNCREATE(CInfoModifications, CObject)

CInfoModifications::CInfoModifications()
{
    InitCInfoModifications();
}

CInfoModifications::CInfoModifications(const CInfoModifications& source) : CObject()
{
    CopyCInfoModifications(source);
}

CInfoModifications::~CInfoModifications() = default;

CInfoModifications CInfoModifications::operator=(const CInfoModifications& source)
{
    if (this != &source)
        CopyCInfoModifications(source);
    return *this;
}

void CInfoModifications::InitCInfoModifications()
{
    Indice = ' ';
    Date = _time64(nullptr);
    Texte.Empty();
    Etat = ' ';
}

void CInfoModifications::CopyCInfoModifications(const CInfoModifications& source)
{
    InitCInfoModifications();
    Indice = source.Indice;
    Date = source.Date;
    Texte = source.Texte;
    Etat = source.Etat;
}
