// A host that loads the hosting library at run time, shows a Qt field in its window
// and unloads the library: three rounds, the first and last without stopping Qt (the
// unload does it), the middle one stopping it first. Each unload must take Qt's window
// out of the host's and really unload the library; the process must end cleanly.
//     hote-module MODULE
#include <chrono>
#include <cstdio>
#include <thread>

#include <dlfcn.h>

#include <X11/Xlib.h>

namespace
{
// The host window's children that are on screen.
int EnfantsVisibles(Display* pAffichage, Window fenetre)
{
    Window racine, parent, *liste = nullptr;
    unsigned int n = 0;
    int nVisibles = 0;
    XQueryTree(pAffichage, fenetre, &racine, &parent, &liste, &n);
    for (unsigned int i = 0; i < n; ++i)
    {
        XWindowAttributes a;
        if (XGetWindowAttributes(pAffichage, liste[i], &a) && a.map_state == IsViewable)
            ++nVisibles;
    }
    if (liste)
        XFree(liste);
    return nVisibles;
}

template <typename F>
bool Jusqua(F&& condition)
{
    for (int i = 0; i < 500; ++i)
    {
        if (condition())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

int Echec(const char* quoi, int nTour)
{
    std::printf("hote-module: round %d: %s\n", nTour, quoi);
    return 1;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
        return 2;
    Display* pAffichage = XOpenDisplay(nullptr);
    if (!pAffichage)
        return 2;
    Window fenetre = XCreateSimpleWindow(pAffichage, DefaultRootWindow(pAffichage), 20, 20, 300, 60, 0, 0, 0xffffff);
    XMapWindow(pAffichage, fenetre);
    XSync(pAffichage, False);
    for (int nTour = 0; nTour < 3; ++nTour)
    {
        void* pModule = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
        if (!pModule)
            return Echec(dlerror(), nTour);
        auto demarre = reinterpret_cast<int (*)(unsigned long)>(dlsym(pModule, "prefa_module_demarre"));
        auto traite = reinterpret_cast<int (*)(int)>(dlsym(pModule, "prefa_module_traite"));
        auto arrete = reinterpret_cast<int (*)()>(dlsym(pModule, "prefa_module_arrete"));
        if (!demarre || !traite || !arrete || demarre(fenetre) != 1)
            return Echec("Qt did not start", nTour);
        if (!Jusqua([&] { return traite(10) == 1 && EnfantsVisibles(pAffichage, fenetre) == 1; }))
            return Echec("the field did not show in the host's window", nTour);
        if (nTour == 1 && arrete() != 1)
            return Echec("Qt did not stop", nTour);
        if (dlclose(pModule) != 0)
            return Echec(dlerror(), nTour);
        if (dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD))
            return Echec("the library stayed loaded", nTour);
        if (!Jusqua([&] { return EnfantsVisibles(pAffichage, fenetre) == 0; }))
            return Echec("Qt's window stayed in the host's", nTour);
        std::printf("round %d ok\n", nTour);
    }
    XCloseDisplay(pAffichage);
    return 0;
}
