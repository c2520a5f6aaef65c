// SPDX-License-Identifier: MIT
// Decodes a .ccd file with the decoder of Shaka Player and prints {"cc1": ["text", ...], "s1": [...]}: every caption
// in order of presentation.
// usage: node decode_shaka.js NODE_MODULES FILE.ccd
'use strict';
const fs = require('fs');
const path = require('path');
const vm = require('vm');
const ccd = require('./ccd');

const [modules, file] = process.argv.slice(2);
const library = path.resolve(modules, 'shaka-player/lib');

// Its sources are written for the Closure library: each says what it provides and what it requires.
const sources = new Map();
for (const folder of ['cea', 'text', 'util', 'media', 'debug', 'deprecate']) {
    for (const name of fs.readdirSync(path.join(library, folder))) {
        const text = fs.readFileSync(path.join(library, folder, name), 'utf8');
        for (const [, provided] of text.matchAll(/goog\.provide\('([^']+)'\)/g)) sources.set(provided, text);
    }
}
const sandbox = vm.createContext({console, window: {}, Uint8Array, DataView, TextDecoder});
// A method of newer engines than Node.js 20.
vm.runInContext(`Map.prototype.getOrInsertComputed = function(key, make) {
    if (!this.has(key)) this.set(key, make(key));
    return this.get(key);
};`, sandbox);
const loaded = new Set();
function Namespace(name) {
    name.split('.').reduce((at, part) => (at[part] = at[part] || {}), sandbox);
}
function Load(name) {
    const text = sources.get(name);
    if (!text || loaded.has(text)) return;
    loaded.add(text);
    vm.runInContext(text, sandbox);
}
sandbox.goog = {
    provide: Namespace,
    require: Load,
    requireType: () => undefined,
    asserts: {assert: () => undefined},
    DEBUG: false,
};
// Parts of the player that the decoder mentions and does not need here.
sandbox.shaka = {
    log: new Proxy({}, {get: () => () => undefined}),
    media: {ClosedCaptionParser: {registerDecoder: () => undefined, setDecoderFactory: () => undefined}},
};
for (const name of ['shaka.log', 'shaka.media.ClosedCaptionParser', 'goog.asserts']) sources.delete(name);
Load('shaka.cea.CeaDecoder');

function Text(cue) {
    return (cue.payload || '') + cue.nestedCues.map((part) => (part.lineBreak ? '\n' : Text(part))).join('');
}

const decoder = new sandbox.shaka.cea.CeaDecoder();
const captions = new ccd.Captions();
for (const {seconds, triplets} of ccd.Read(file)) {
    // A message holds at most 31 triplets.
    for (let i = 0; i < triplets.length; i += 31) {
        const part = triplets.slice(i, i + 31);
        const message = [0xb5, 0x00, 0x31, 0x47, 0x41, 0x39, 0x34, 0x03, 0xc0 | part.length, 0xff];
        for (const triplet of part) message.push(...triplet);
        decoder.extract(Uint8Array.from([...message, 0xff]), seconds);
    }
    for (const {cue, stream} of decoder.decode()) {
        captions.Add(stream.toLowerCase().replace('svc', 's'), Text(cue));
    }
}
captions.Print();
