// SPDX-License-Identifier: MIT
// Decodes a .ccd file with mux.js over and over and prints how many triplets a second.
// usage: node muxjs.js NODE_MODULES FILE.ccd PASSES
'use strict';
const path = require('path');
const ccd = require('../../tests/captions/peers/ccd');

const [modules, file, passes] = process.argv.slice(2);
const {Cea608Stream, Cea708Stream} = require(path.resolve(modules, 'mux.js/lib/m2ts/caption-stream'));

const packets = [];
for (const {seconds, triplets} of ccd.Read(file)) {
    for (const [head, first, second] of triplets) {
        packets.push({type: head & 3, ccData: first << 8 | second, pts: Math.round(seconds * 90000)});
    }
}
const channel = new Cea608Stream(0, 0);
const services = new Cea708Stream();

function Pass() {
    for (const packet of packets) (packet.type >= 2 ? services : channel).push(packet);
}
Pass(); // compiles what is hot
const start = process.hrtime.bigint();
for (let pass = 0; pass < Number(passes); ++pass) Pass();
const seconds = Number(process.hrtime.bigint() - start) / 1e9;
console.log(JSON.stringify({triplets: packets.length * Number(passes), seconds}));
