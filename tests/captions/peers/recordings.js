// SPDX-License-Identifier: MIT
// Writes the recordings of broadcasts that come with mux.js as .ccd files.
// usage: node recordings.js NODE_MODULES FOLDER
'use strict';
const fs = require('fs');
const path = require('path');

const [modules, folder] = process.argv.slice(2);
for (const name of ['cc708-korean', 'cc708-pink-underscore', 'mixed-608-708-captions']) {
    const packets = require(path.resolve(modules, 'mux.js/test/utils', name));
    const lines = new Map();
    for (const {pts, type, ccData} of packets) {
        const milliseconds = Math.round(pts / 90);
        const triplet = (0xfc | type).toString(16) + ccData.toString(16).padStart(4, '0');
        lines.set(milliseconds, (lines.get(milliseconds) || []).concat(triplet));
    }
    const text = [...lines].map(([time, triplets]) => `${time} ${triplets.join(' ')}\n`).join('');
    fs.writeFileSync(path.join(folder, name + '.ccd'), text);
}
