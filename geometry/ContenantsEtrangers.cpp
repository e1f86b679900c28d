// Node management of the callers' linked point lists.
#include "geometry/ContenantsEtrangers.h"

#include <cstdlib>

L_POINT* l2ch_AjouteQueue(l2ch_descrip* liste, double x, double y)
{
    const size_t taille =
        liste->taille_noeud > sizeof(L_POINT) ? liste->taille_noeud : sizeof(L_POINT);
    L_POINT* noeud = static_cast<L_POINT*>(std::calloc(1, taille));
    if (!noeud)
        return nullptr;
    noeud->x = x;
    noeud->y = y;
    noeud->precedent = liste->queue;
    if (liste->queue)
        liste->queue->suivant = noeud;
    else
        liste->tete = noeud;
    liste->queue = noeud;
    return noeud;
}

void l2ch_Supprime(l2ch_descrip* liste, L_POINT* noeud)
{
    if (noeud->precedent)
        noeud->precedent->suivant = noeud->suivant;
    else
        liste->tete = noeud->suivant;
    if (noeud->suivant)
        noeud->suivant->precedent = noeud->precedent;
    else
        liste->queue = noeud->precedent;
    std::free(noeud);
}

void l2ch_Libere(l2ch_descrip* liste)
{
    L_POINT* noeud = liste->tete;
    while (noeud)
    {
        L_POINT* suivant = noeud->suivant;
        std::free(noeud);
        noeud = suivant;
    }
    liste->tete = nullptr;
    liste->queue = nullptr;
}

int l2ch_Compte(const l2ch_descrip* liste)
{
    int n = 0;
    if (!liste)
        return 0;
    for (const L_POINT* noeud = liste->tete; noeud; noeud = noeud->suivant)
        ++n;
    return n;
}
