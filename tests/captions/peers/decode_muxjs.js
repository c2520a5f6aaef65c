// SPDX-License-Identifier: MIT
// Decodes a .ccd file with mux.js and prints {"cc1": ["text", ...], "s1": [...]}: every caption in order of
// presentation.
// usage: node decode_muxjs.js NODE_MODULES FILE.ccd
'use strict';
const path = require('path');
const ccd = require('./ccd');

const [modules, file] = process.argv.slice(2);
const {Cea608Stream, Cea708Stream} = require(path.resolve(modules, 'mux.js/lib/m2ts/caption-stream'));
const captions = new ccd.Captions();

const channels = [];
for (const [field, data, name] of [[0, 0, 'cc1'], [0, 1, 'cc2'], [1, 0, 'cc3'], [1, 1, 'cc4']]) {
    const stream = new Cea608Stream(field, data);
    stream.on('data', (cue) => captions.Add(name, cue.content.map((line) => line.text).join('\n')));
    channels.push({field, data, stream});
}
const services = new Cea708Stream();
services.on('data', (cue) => captions.Add(cue.stream.replace('cc708_', 's'), cue.text));

// mux.js gives a pair to the channel that the last control code of its field has selected.
const selected = [null, null];
for (const {seconds, triplets} of ccd.Read(file)) {
    const pts = Math.round(seconds * 90000);
    for (const [head, first, second] of triplets) {
        const packet = {type: head & 3, ccData: first << 8 | second, pts};
        if (packet.type >= 2) {
            services.push(packet);
            continue;
        }
        const code = first & 0x7f;
        if (code >= 0x10 && code < 0x20) selected[packet.type] = code >> 3 & 1;
        for (const {field, data, stream} of channels) {
            if (field === packet.type && data === selected[field]) stream.push(packet);
        }
    }
}
for (const {stream} of channels) stream.flush();
services.flush();
captions.Print();
