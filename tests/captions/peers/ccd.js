// SPDX-License-Identifier: MIT
// What the programs that run other decoders share: reading a .ccd file, collecting captions, printing them.
'use strict';
const fs = require('fs');

// One entry for each line of a .ccd file: {seconds, triplets}, invalid triplets left out.
exports.Read = function(file) {
    const entries = [];
    for (const line of fs.readFileSync(file, 'utf8').split('\n')) {
        const match = /^(?:(\d+):(\d+):([\d.]+)|(\d+))\s+([0-9a-fA-F ]+)$/.exec(line.replace(/#.*/, '').trim());
        if (!match) continue;
        const seconds = match[4] ? Number(match[4]) / 1000 : match[1] * 3600 + match[2] * 60 + Number(match[3]);
        const bytes = Buffer.from(match[5].replace(/ /g, ''), 'hex');
        const triplets = [];
        for (let i = 0; i + 3 <= bytes.length; i += 3) {
            if (bytes[i] & 4) triplets.push(bytes.subarray(i, i + 3));
        }
        entries.push({seconds, triplets});
    }
    return entries;
};

// Collects {name: [text, ...]}, without captions that hold nothing but blanks.
exports.Captions = class {
    constructor() {
        this.found = {};
    }
    Add(name, text) {
        if (text.trim()) (this.found[name] = this.found[name] || []).push(text);
    }
    Print() {
        process.stdout.write(JSON.stringify(this.found, null, 1) + '\n');
    }
};
