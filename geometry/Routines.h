// Free geometric routines shared by the geometry classes and the calling programs:
// decimal rounding and comparison, degree trigonometry, a 3x3 solver, segment
// intersection, point-on-segment tests, containment and area on the foreign point
// containers. Each routine uses its own tolerance; there is no shared epsilon.
#pragma once

#include "geometry/ContenantsEtrangers.h"

// v rounded to n decimals, half away from zero; anything within 1e-7 of zero gives 0
// whatever n is.
double Round(double v, int n);
// Three-way comparison after rounding both values to n decimals (1 when a is larger);
// values closer than 1e-12 are equal.
int Comparer(double a, double b, int n);
// 1 above 10^-n, -1 below -10^-n, else 0.
int Signe(double v, int n);
double dsin(double angle);
double dcos(double angle);
// f as a double with its mantissa rounded to 7 decimals (removes float noise).
double TransfoFloatDouble(float f);
void Swap_Int(int* a, int* b);
// Half projections of a rectangle's sides, in order: largeur sin/2, hauteur sin/2,
// largeur cos/2, hauteur cos/2 (sizes first cleaned by TransfoFloatDouble).
void calcot(double* lsin, double* hsin, double* lcos, double* hcos, float largeur,
            float hauteur, double angle);
// 0 when the two boxes, widened by tol, do not overlap (touching counts as apart).
int superposition_elements(double x1min, double y1min, double x1max, double y1max,
                           double x2min, double y2min, double x2max, double y2max,
                           double tol);
// Gauss-Jordan with column pivoting on a 3x3 system (matrix row by row);
// 0 on success, -1 when a pivot is below 1e-18.
int Resous_Systeme(const double a[9], const double b[3], double x[3]);
// Crossing of the lines of segments 1 and 2, stored in *x, *y (left untouched when
// 0 is returned). Returns 0 when parallel (cross product of the directions below
// 1e-10) or without convergence, 3 on both segments, 1 on segment 1 only, 2 on
// segment 2 only, -1 on neither (Appartient_Voisinage with tol squared).
// Newton unknowns: the point (X, Y) and its parameter t along segment 2, with both
// lines in implicit form so that the +/-1e10 construction lines converge; at most
// 10 steps, stopping when the corrections sum to <= 1e-7.
int Donne_Intersection(double x1, double y1, double x2, double y2, double x3, double y3,
                       double x4, double y4, double* x, double* y, double tol);
// Orthogonal projection of (px, py) on the line (x0, y0)-(x1, y1), stored in
// *xp, *yp; non-zero when it falls on the segment (tolerance 1e-7).
int Projection_Point_Sur_Droite(double x0, double y0, double x1, double y1, double px,
                                double py, double* xp, double* yp);
// 1 when the point equals an end (1e-10), lies within sqrt(tol2) of an end, or lies
// within sqrt(tol2) of the segment's line inside the segment's box widened by 1e-7.
int Appartient_Voisinage(double px, double py, double x0, double y0, double x1, double y1,
                         double tol2);
// -1 outside, 0 inside, k >= 1 on edge k (1-based) of the closed contour. Crossing
// count with tolerance 1e-8, "within 1e-8" being inclusive; the first edge found on
// the boundary gives k.
int AppartientAContour(const CArray<ptD, ptD>& contour, const ptD& p);
// Signed area of the linked contour (positive counter-clockwise); 0 for null/empty.
double Surface_Contour_Polygone(const l2ch_descrip* liste);
// Removes aligned points from the linked contour (freed with free()); returns the
// point count left. A point is aligned when it lies within tol (a distance, at least
// 1e-10) of the line through its two neighbours and between them (within tol), the
// contour being closed; a spike turning back along itself stays. Removal repeats
// until nothing changes or two points remain. Lists of fewer than 3 points are left
// unchanged.
int sup_point_aligne(l2ch_descrip* liste, double tol);
