// SPDX-License-Identifier: MIT
#include "expect.h"
#include "support.h"

#include <dlfcn.h>
#include <malloc.h>

using namespace test;

static pKovaITextDisplay_t Create()
{
    KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER2);
    return Kova_TextDFBDisp_Create(&param);
}

static const char s_acEnter[] = "enter Kova_TextDFBDisp_Create\n";
static const char s_acExit[] = "exit Kova_TextDFBDisp_Create\n";
static const char s_acOpen[] = "dlopen libdirectfb.so NOW|GLOBAL\n";

TEST(LoadLibrary, OpensDirectFBByNameAndResolvesItsThreeFunctionsInOrder)
{
    pKovaITextDisplay_t pDisplay = Create();

    EXPECT_EQ(Trace().rfind(std::string(s_acEnter) + s_acOpen +
                                "dlsym DirectFBInit\n"
                                "dlsym DirectFBCreate\n"
                                "dlsym DirectFBErrorFatal\n"
                                "log Kova_TextDFBDisp_Create: Before DFB Init!\n",
                            0),
              0u)
        << Trace();
    const KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    EXPECT_NE(pRecord->pDlHandle, nullptr);
    EXPECT_EQ(pRecord->pFnDirectFBInit, DirectFBInit);
    EXPECT_EQ(pRecord->pFnDirectFBCreate, DirectFBCreate);
    EXPECT_EQ(reinterpret_cast<void *>(pRecord->pFnDirectFBErrorFatal),
              reinterpret_cast<void *>(DirectFBErrorFatal));
    Kova_TextDFBDisp_Destroy(pDisplay);
}

TEST(LoadLibrary, ReportsThatDirectFBIsNotThere)
{
    const LeaksAreMeant_t leaks; // the record is not freed
    FailLoading("libdirectfb.so: cannot open shared object file");

    EXPECT_EQ(Create(), nullptr);

    EXPECT_EQ(Trace(),
              std::string(s_acEnter) + s_acOpen +
                  "error TextDisplayLoadLibrary: Load libdirectfb.so error:libdirectfb.so: cannot open "
                  "shared object file\n" +
                  s_acExit);
    EXPECT_EQ(CallCount(), 0);
}

TEST(LoadLibrary, ReportsInOneRecord)
{
    const LeaksAreMeant_t leaks;
    FailLoading("gone");

    Create();

    const std::vector<Record_t> records = Records();
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(records[1].iLevel, 1);
    EXPECT_EQ(records[1].file, "Src/kova_textdisp_dfb");
    EXPECT_EQ(records[1].function, "TextDisplayLoadLibrary");
    EXPECT_EQ(records[1].format, "Load libdirectfb.so error:%s\n");
    EXPECT_EQ(records[1].text, "Load libdirectfb.so error:gone\n");
}

TEST(LoadLibrary, ReportsTheFirstFunctionThatIsMissingAndClosesTheLibrary)
{
    static const char *const s_apcNames[] = {"DirectFBInit", "DirectFBCreate", "DirectFBErrorFatal"};
    const LeaksAreMeant_t leaks;
    std::string asked;

    for (const char *pcName : s_apcNames) {
        SCOPED_TRACE(pcName);
        Reset();
        FailSymbol(pcName, std::string("undefined symbol: ") + pcName);
        asked += std::string("dlsym ") + pcName + "\n";

        EXPECT_EQ(Create(), nullptr);

        EXPECT_EQ(Trace(), std::string(s_acEnter) + s_acOpen + asked +
                               "error TextDisplayLoadLibrary: Load libdirectfb.so error:undefined symbol: " +
                               pcName + "\n" + "dlclose\n" + s_acExit);
        EXPECT_EQ(Records()[1].format, "Load libdirectfb.so error:%s\n");
        EXPECT_EQ(CallCount(), 0);
    }
}

TEST(LoadLibrary, ForgetsAnErrorThatWasThereBefore)
{
    FailSymbol("DirectFBInit", "an old error");
    // cppcheck-suppress ignoredReturnValue ; only the error that it leaves matters
    (void)dlsym(RTLD_DEFAULT, "DirectFBInit");
    FailSymbol("", "");

    pKovaITextDisplay_t pDisplay = Create();

    ASSERT_NE(pDisplay, nullptr);
    EXPECT_EQ(TraceOf("error"), "");
    Kova_TextDFBDisp_Destroy(pDisplay);
}

TEST(LoadLibrary, KeepsTheRecordOfADisplayThatItCouldNotMake)
{
    const LeaksAreMeant_t leaks;
    const int iTimes = 100;
    for (int i = 0; i < 10; i++) { // until the double's own memory stops growing
        FailLoading("gone");
        Create();
        ClearTrace();
    }
    const size_t uiBefore = mallinfo2().uordblks;
    if (uiBefore == 0) GTEST_SKIP() << "a sanitizer owns the heap";

    for (int i = 0; i < iTimes; i++) {
        Create();
        ClearTrace();
    }

    EXPECT_GE(mallinfo2().uordblks - uiBefore, iTimes * sizeof(KovaDFBDisplay_t));
}

TEST(LoadLibrary, ReportsNoErrorBelowTheThreshold)
{
    const LeaksAreMeant_t leaks;
    FailLoading("gone");
    SetThreshold(0);

    EXPECT_EQ(Create(), nullptr);

    EXPECT_TRUE(Records().empty());
}

TEST(UnLoadLibrary, ClosesTheHandleOnceForEachDisplay)
{
    pKovaITextDisplay_t pFirst = Create();
    pKovaITextDisplay_t pSecond = Create();
    EXPECT_EQ(TraceOf("dlopen"), std::string(s_acOpen) + s_acOpen);
    EXPECT_EQ(TraceOf("dlclose"), "");

    Kova_TextDFBDisp_Destroy(pFirst);
    EXPECT_EQ(TraceOf("dlclose"), "dlclose\n");
    Kova_TextDFBDisp_Destroy(pSecond);
    EXPECT_EQ(TraceOf("dlclose"), "dlclose\ndlclose\n");
}
