#include "geometry/Routines.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>
#include <vector>

namespace
{

// A caller's list, freed at the end of the test.
struct Liste
{
    explicit Liste(std::initializer_list<std::pair<double, double>> points,
                   size_t taille = sizeof(L_POINT))
    {
        d.tete = d.queue = nullptr;
        d.taille_noeud = taille;
        for (const auto& p : points)
            l2ch_AjouteQueue(&d, p.first, p.second);
    }
    ~Liste() { l2ch_Libere(&d); }
    std::vector<std::pair<double, double>> Points() const
    {
        std::vector<std::pair<double, double>> v;
        for (const L_POINT* n = d.tete; n; n = n->suivant)
            v.emplace_back(n->x, n->y);
        return v;
    }
    l2ch_descrip d;
};

typedef std::vector<std::pair<double, double>> Points;

} // namespace

TEST(l2ch, NodesAreLinkedBothWaysAndZeroFilledToTheNodeSize)
{
    Liste l({{1, 2}, {3, 4}, {5, 6}}, 64);
    ASSERT_EQ(l2ch_Compte(&l.d), 3);
    EXPECT_EQ(l.d.tete->x, 1.0);
    EXPECT_EQ(l.d.tete->y, 2.0);
    EXPECT_EQ(l.d.queue->x, 5.0);
    EXPECT_EQ(l.d.tete->precedent, nullptr);
    EXPECT_EQ(l.d.queue->suivant, nullptr);
    EXPECT_EQ(l.d.tete->suivant->suivant, l.d.queue);
    EXPECT_EQ(l.d.queue->precedent->precedent, l.d.tete);
    // The caller's part of each node, after x and y, starts zeroed.
    const unsigned char* octets = reinterpret_cast<const unsigned char*>(l.d.tete);
    for (size_t i = sizeof(L_POINT); i < 64; ++i)
        EXPECT_EQ(octets[i], 0) << i;

    l2ch_Supprime(&l.d, l.d.tete);
    EXPECT_EQ(l.d.tete->x, 3.0);
    EXPECT_EQ(l.d.tete->precedent, nullptr);
    l2ch_Supprime(&l.d, l.d.queue);
    EXPECT_EQ(l.d.queue, l.d.tete);
    EXPECT_EQ(l.d.queue->suivant, nullptr);
    EXPECT_EQ(l2ch_Compte(&l.d), 1);
    EXPECT_EQ(l2ch_Compte(nullptr), 0);
}

TEST(Surface_Contour_Polygone, SignedAreaOfTheLinkedContour)
{
    Liste direct({{0, 0}, {2, 0}, {2, 1}, {0, 1}});
    EXPECT_DOUBLE_EQ(Surface_Contour_Polygone(&direct.d), 2.0);
    Liste horaire({{0, 0}, {0, 1}, {2, 1}, {2, 0}});
    EXPECT_DOUBLE_EQ(Surface_Contour_Polygone(&horaire.d), -2.0);
    Liste vide({});
    EXPECT_EQ(Surface_Contour_Polygone(&vide.d), 0.0);
    EXPECT_EQ(Surface_Contour_Polygone(nullptr), 0.0);
    Liste seul({{3, 3}});
    EXPECT_EQ(Surface_Contour_Polygone(&seul.d), 0.0);
}

TEST(sup_point_aligne, RemovesPointsOnTheLineOfTheirNeighbours)
{
    // Midpoints on every side, and the head itself in the middle of a side.
    Liste l({{1, 0}, {2, 0}, {2, 1}, {2, 2}, {1, 2}, {0, 2}, {0, 1}, {0, 0}});
    EXPECT_EQ(sup_point_aligne(&l.d, 1e-6), 4);
    EXPECT_EQ(l.Points(), (Points{{2, 0}, {2, 2}, {0, 2}, {0, 0}}));
    EXPECT_EQ(l.d.tete->precedent, nullptr);
    EXPECT_EQ(l.d.queue->suivant, nullptr);
    EXPECT_DOUBLE_EQ(Surface_Contour_Polygone(&l.d), 4.0);

    // tol is a distance from the line of the neighbours.
    Liste presque({{0, 0}, {1, 0.01}, {2, 0}, {2, 2}});
    EXPECT_EQ(sup_point_aligne(&presque.d, 0.005), 4);
    EXPECT_EQ(sup_point_aligne(&presque.d, 0.02), 3);
    EXPECT_EQ(presque.Points(), (Points{{0, 0}, {2, 0}, {2, 2}}));

    // A repeated point goes, a spike that comes back along itself stays.
    Liste repete({{0, 0}, {1, 0}, {1, 0}, {1, 1}});
    EXPECT_EQ(sup_point_aligne(&repete.d, 1e-9), 3);
    Liste pointe({{0, 0}, {3, 0}, {1, 0}, {1, 1}});
    EXPECT_EQ(sup_point_aligne(&pointe.d, 1e-9), 4);
    Liste arriere({{0, 0}, {-1, 0}, {2, 0}, {2, 1}});
    EXPECT_EQ(sup_point_aligne(&arriere.d, 1e-9), 4);

    // Fewer than three points: unchanged.
    Liste deux({{0, 0}, {0, 0}});
    EXPECT_EQ(sup_point_aligne(&deux.d, 1.0), 2);
    EXPECT_EQ(sup_point_aligne(nullptr, 1.0), 0);

    // A flat contour stops at two points.
    Liste plat({{0, 0}, {1, 0}, {2, 0}, {3, 0}});
    EXPECT_EQ(sup_point_aligne(&plat.d, 1e-9), 2);
}
