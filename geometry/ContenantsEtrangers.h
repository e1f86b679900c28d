// The two point containers of the calling programs that the geometry converts to and
// from.
//
// l2ch_descrip describes a doubly linked list of points owned by the caller. Every
// node starts with the next pointer, the previous pointer, then x and y; a node may
// be larger (taille_noeud bytes) to carry the caller's own data after them.
//
// Ownership: nodes the library creates are allocated with calloc (zero-filled to the
// node size) and belong to the caller, who releases them with free() or with
// l2ch_Libere. Nodes the library removes from a list (sup_point_aligne) are released
// with free(), so a caller's list must be built from malloc/calloc allocations.
#pragma once

#include "framework/CArray.h"

#include <cstddef>

struct L_POINT
{
    L_POINT* suivant;
    L_POINT* precedent;
    double x;
    double y;
};

struct l2ch_descrip
{
    L_POINT* tete;       // head node, null for an empty list
    L_POINT* queue;      // tail node
    size_t taille_noeud; // bytes per node, at least sizeof(L_POINT)
};

// A plain pair of doubles (16 bytes), as held in CArray<ptD, ptD>.
struct ptD
{
    double x;
    double y;
};
static_assert(sizeof(ptD) == 16, "ptD is two packed doubles");

typedef CArray<ptD, ptD> CArrayPtD;

// Appends a new zero-filled node of the descriptor's node size (never less than
// sizeof(L_POINT)) holding (x, y); returns it, or null when the allocation failed.
L_POINT* l2ch_AjouteQueue(l2ch_descrip* liste, double x, double y);
// Unlinks a node from the list and frees it.
void l2ch_Supprime(l2ch_descrip* liste, L_POINT* noeud);
// Frees every node; the list becomes empty (the node size is kept).
void l2ch_Libere(l2ch_descrip* liste);
// Number of nodes.
int l2ch_Compte(const l2ch_descrip* liste);
