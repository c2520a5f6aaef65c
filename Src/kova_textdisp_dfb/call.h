// SPDX-License-Identifier: MIT
// The call discipline: how an operation finds its record, locks, checks its context, calls DirectFB and reports.
#ifndef TEXTDISP_CALL_H
#define TEXTDISP_CALL_H

#define TEXTDISP_SOURCE "Src/kova_textdisp_dfb"

#include "common/log.h"
#include "record.h"

// Clang checks the display's lock on every path; for other compilers these are empty.
#if defined(__clang__)
#define TEXTDISP_ANNOTATE(attribute) __attribute__((attribute))
#else
#define TEXTDISP_ANNOTATE(attribute)
#endif
#define HOLDS_DISPLAY TEXTDISP_ANNOTATE(requires_capability(textdisp::DisplayLock))
#define TAKES_DISPLAY TEXTDISP_ANNOTATE(acquire_capability(textdisp::DisplayLock))
#define GIVES_DISPLAY TEXTDISP_ANNOTATE(release_capability(textdisp::DisplayLock))
#define KEEPS_DISPLAY TEXTDISP_ANNOTATE(no_thread_safety_analysis)

namespace textdisp
{

// Stands for display_mutex in the annotations. The lock is recursive; the analysis sees one level of it.
class TEXTDISP_ANNOTATE(capability("display_mutex")) DisplayLock_t
{
};
extern DisplayLock_t DisplayLock;

// Fields that are read without the lock are read and written by these, so that such a read is defined.
template <typename Value> Value Peek(const Value &field)
{
    Value value;
    __atomic_load(&field, &value, __ATOMIC_RELAXED);
    return value;
}

template <typename Value, typename Other> void Poke(Value &field, Other other)
{
    Value value = Value(other);
    __atomic_store(&field, &value, __ATOMIC_RELAXED);
}

inline DFBRegion PeekRegion(const DFBRegion &region)
{
    return DFBRegion{Peek(region.x1), Peek(region.y1), Peek(region.x2), Peek(region.y2)};
}

// The interface is the record's first member, so both have one address.
inline KovaDFBDisplay_t *Record(pKovaITextDisplay_t pThiz)
{
    return reinterpret_cast<KovaDFBDisplay_t *>(pThiz);
}

inline void Lock(KovaDFBDisplay_t *pDisplay) TAKES_DISPLAY KEEPS_DISPLAY
{
    pthread_mutex_lock(&pDisplay->display_mutex);
}

inline void Unlock(KovaDFBDisplay_t *pDisplay) GIVES_DISPLAY KEEPS_DISPLAY
{
    pthread_mutex_unlock(&pDisplay->display_mutex);
}

inline bool IsContextID(kova_sint8 scContextID)
{
    return kova_uint8(scContextID) < MAX_CONTEXTS;
}

inline bool IsFontID(kova_sint32 siFontNumb)
{
    return kova_uint32(siFontNumb) < MAX_FONTS;
}

inline bool IsShown(const KovaDFBDisplay_t *pDisplay)
{
    return Peek(pDisplay->bShow) != 0;
}

inline bool MayAct(const KovaDFBDisplay_t *pDisplay, kova_sint8 scContextID)
{
    return pDisplay->scActiveContextID == scContextID || pDisplay->scActiveContextID == -1;
}

inline bool IsIndexed(const KovaDFBDisplay_t *pDisplay)
{
    return !Peek(pDisplay->bColor32) && !pDisplay->bTextDisp_Palette;
}

// Calls a method of a DirectFB object. A missing object counts as destroyed. Numbers are converted to the types that
// the header at hand declares, because headers differ in them.
template <typename To, typename From> To Argument(From from)
{
    return static_cast<To>(from);
}

template <typename Interface, typename Result, typename... Params, typename... Args>
DFBResult Call(Interface *pObject, Result (*Interface::*method)(Interface *, Params...), Args... args)
{
    return pObject ? DFBResult((pObject->*method)(pObject, Argument<Params>(args)...)) : DFB_DESTROYED;
}

// Releases an object and clears the field. Nothing else releases an object.
template <typename Interface> DFBResult ReleaseAndClear(Interface *&pObject)
{
    const DFBResult eResult = Call(pObject, &Interface::Release);

    Poke(pObject, nullptr);
    return eResult;
}

// Out of line: the report is rare and its text long.
TEXTDISP_COLD void ReportResult(DFBResult eResult, int iLine);
TEXTDISP_COLD void ReportResultBriefly(int iLine);

inline void Check(DFBResult eResult, int iLine)
{
    if (eResult != DFB_OK) ReportResult(eResult, iLine);
}

inline void CheckBriefly(DFBResult eResult, int iLine)
{
    if (eResult != DFB_OK) ReportResultBriefly(iLine);
}

} // namespace textdisp

// A DirectFB result other than DFB_OK is printed to standard error, whatever the log threshold, and work goes on.
#define DFB_CHECK(result) textdisp::Check(result, __LINE__)
#define DFB_CHECK_BRIEF(result) textdisp::CheckBriefly(result, __LINE__)

#endif
