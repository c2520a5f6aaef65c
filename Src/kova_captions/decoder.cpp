// SPDX-License-Identifier: MIT
#include <kova/kova_captions.h>

void Kova_Captions_GetDefaults(KovaCaptionsOptions *)
{
}

size_t Kova_Captions_GetMemorySize(const KovaCaptionsOptions *)
{
    return {};
}

KovaCaptions *Kova_Captions_Create(const KovaCaptionsOptions *)
{
    return nullptr;
}

void Kova_Captions_Destroy(KovaCaptions *)
{
}

int Kova_Captions_PushTriplets(KovaCaptions *, int64_t, const uint8_t *, size_t)
{
    return 0;
}

int Kova_Captions_PushCcData(KovaCaptions *, int64_t, const uint8_t *, size_t)
{
    return 0;
}

int Kova_Captions_PushPair(KovaCaptions *, int64_t, int, uint8_t, uint8_t)
{
    return 0;
}

int Kova_Captions_Advance(KovaCaptions *, int64_t)
{
    return 0;
}

int Kova_Captions_Discontinuity(KovaCaptions *)
{
    return 0;
}

int Kova_Captions_Select(KovaCaptions *, uint8_t, int)
{
    return 0;
}

uint32_t Kova_Captions_Revision(const KovaCaptions *)
{
    return {};
}

int Kova_Captions_GetStatus(KovaCaptions *, uint8_t, KovaCaptionsStatus *)
{
    return 0;
}

int Kova_Captions_GetChannel(KovaCaptions *, uint8_t, KovaCaptionsChannel *)
{
    return 0;
}

int Kova_Captions_GetService(KovaCaptions *, uint8_t, KovaCaptionsService *, KovaCaptionsWindow *, uint8_t)
{
    return 0;
}

int Kova_Captions_GetProgram(KovaCaptions *, KovaCaptionsProgram *)
{
    return 0;
}

int Kova_Captions_GetActivity(KovaCaptions *, KovaCaptionsActivity *)
{
    return 0;
}

int Kova_Captions_GetCounters(KovaCaptions *, KovaCaptionsCounters *)
{
    return 0;
}

int64_t Kova_Captions_NextChange(KovaCaptions *, uint8_t, unsigned)
{
    return {};
}

int Kova_Captions_NextEvent(KovaCaptions *, KovaCaptionsEvent *)
{
    return 0;
}

int Kova_Captions_EndRuns(KovaCaptions *)
{
    return 0;
}

int Kova_Captions_FormatEvent(const KovaCaptionsEvent *, char *, size_t)
{
    return 0;
}

const char *Kova_Captions_EventName(uint8_t)
{
    return {};
}

const char *Kova_Captions_ArgumentName(uint8_t, unsigned)
{
    return {};
}

const char *Kova_Captions_SourceName(uint8_t)
{
    return {};
}

uint8_t Kova_Captions_SourceByName(const char *)
{
    return {};
}
