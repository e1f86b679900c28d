#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace prefa_test;

namespace
{
// An exception that counts its living instances.
class CCountedException : public CException
{
public:
    static int s_nLive;
    explicit CCountedException(int n = 0) : m_n(n) { ++s_nLive; }
    ~CCountedException() override { --s_nLive; }
    int m_n;
};
int CCountedException::s_nLive = 0;
} // namespace

TEST(CException, CatchMacrosReleaseWhatTheyCaught)
{
    // The handler of the exception's kind runs, and END_CATCH deletes the exception.
    int seen = 0;
    TRY
    {
        THROW(new CCountedException(7));
    }
    CATCH (CFileException, e)
    {
        seen = -1;
    }
    AND_CATCH (CCountedException, e)
    {
        seen = e->m_n;
        EXPECT_EQ(1, CCountedException::s_nLive);
    }
    END_CATCH
    EXPECT_EQ(7, seen);
    EXPECT_EQ(0, CCountedException::s_nLive);

    // A Delete() of the caller's habit inside the block is not a second deletion.
    TRY
    {
        THROW(new CCountedException);
    }
    CATCH_ALL (e)
    {
        e->Delete();
    }
    END_CATCH_ALL
    EXPECT_EQ(0, CCountedException::s_nLive);

    // THROW_LAST hands the same exception on, alive.
    CException* pInner = nullptr;
    CException* pOuter = nullptr;
    try
    {
        TRY
        {
            THROW(new CCountedException(1));
        }
        CATCH (CCountedException, e)
        {
            pInner = e;
            THROW_LAST();
        }
        END_CATCH
    }
    catch (CException* e)
    {
        pOuter = e;
    }
    EXPECT_EQ(pInner, pOuter);
    EXPECT_EQ(1, CCountedException::s_nLive);
    pOuter->Delete();

    EXPECT_EQ(0, CCountedException::s_nLive);
}
