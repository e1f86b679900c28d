// Waiting in the tests as a host does: Qt's events run from the host's loop while the
// host reads its own, until what the test waits for is there.
#pragma once

#include "FenetreX.h"
#include "qthost/CQtHote.h"

#include <QElapsedTimer>

#include <chrono>
#include <thread>

namespace prefa_test
{

// True once the condition holds, false after nMs milliseconds without it.
template <typename F>
bool Jusqua(F&& condition, FenetreX* pHote = nullptr, int nMs = 5000)
{
    QElapsedTimer chrono;
    chrono.start();
    for (;;)
    {
        CQtHote::TraiteEvenements(5);
        if (pHote)
            pHote->Lit();
        if (condition())
            return true;
        if (chrono.elapsed() > nMs)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

} // namespace prefa_test
