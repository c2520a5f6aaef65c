/* SPDX-License-Identifier: MIT */
/* Decodes one caption of CC1 and says whether it came out. */
#include <kova/kova_captions.h>
#include <stdio.h>

int main(void)
{
    /* Resume direct captioning, row 15, "HI". */
    static const uint8_t triplets[] = {0xFC, 0x94, 0x29, 0xFC, 0x94, 0x70, 0xFC, 0xC8, 0x49};
    KovaCaptions *decoder = Kova_Captions_Create(NULL);
    KovaCaptionsChannel channel;

    if (!decoder) return 1;
    Kova_Captions_PushTriplets(decoder, 0, triplets, 3);
    Kova_Captions_GetChannel(decoder, KOVA_CAPTIONS_CC1, &channel);
    Kova_Captions_Destroy(decoder);
    printf("%c%c\n", channel.displayed[14][0].character, channel.displayed[14][1].character);
    return channel.displayed[14][0].character != 'H' || channel.displayed[14][1].character != 'I';
}
