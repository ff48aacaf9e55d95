// tavrelle-batch on a file with the options the web module takes, run in a folder that holds a
// copy of the file under its own name, so that its reports name the file as the page does.
'use strict';
const { spawnSync } = require('child_process');
const fs = require('fs');
const os = require('os');
const path = require('path');

// The module's own option names, turned into the command line the same way.
global.self = global;
require(path.join(__dirname, '../../web/tavrelle.js'));
const commandLineOf = global.Tavrelle.commandLineOf;

function runBatch(batch, file, options) {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'tavrelle-batch-'));
    try {
        const name = path.basename(file);
        fs.copyFileSync(file, path.join(folder, name));
        const words = [...commandLineOf(options), name, '--json', 'out.json', '--csv', 'out.csv',
            '--report', 'out.html', '--threads', '1'];
        const run = spawnSync(path.resolve(batch), words, { cwd: folder, encoding: 'utf8', maxBuffer: 1 << 28 });
        const read = (out) => (fs.existsSync(path.join(folder, out)) ? fs.readFileSync(path.join(folder, out), 'utf8') : null);
        return { status: run.status, stderr: run.stderr, json: read('out.json'), csv: read('out.csv'), report: withoutRunLines(read('out.html')) };
    } finally {
        fs.rmSync(folder, { recursive: true, force: true });
    }
}

// Where two texts part: the first differing line, and how many lines differ with the JSON keys
// they carry, for a failure message that says what kind of number drifted.
function firstDifference(a, b) {
    const left = String(a).split('\n');
    const right = String(b).split('\n');
    let first = -1;
    let count = 0;
    const keys = new Set();
    for (let i = 0; i < Math.max(left.length, right.length); ++i) {
        if (left[i] === right[i]) continue;
        if (first < 0) first = i;
        ++count;
        const key = /^\s*"([^"]+)":/.exec(left[i] || '');
        if (key) keys.add(key[1]);
    }
    if (first < 0) return 'no difference';
    return `line ${first + 1} (${count} lines differ${keys.size ? `; keys ${[...keys].join(', ')}` : ''}):\n` +
        `  web:   ${String(left[first]).slice(0, 300)}\n  batch: ${String(right[first]).slice(0, 300)}`;
}

// A study report without the lines that tell when and by which command it was made, which differ
// between two runs of the same study.
function withoutRunLines(report) {
    return report === null || report === undefined ? report
        : String(report).replace(/^<tr><th>(Report made|Command)<\/th>.*\n/gm, '');
}

module.exports = { runBatch, firstDifference, commandLineOf, withoutRunLines };
