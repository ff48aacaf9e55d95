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
        return { status: run.status, stderr: run.stderr, json: read('out.json'), csv: read('out.csv'), report: read('out.html') };
    } finally {
        fs.rmSync(folder, { recursive: true, force: true });
    }
}

// The first line where two texts part, for a failure message.
function firstDifference(a, b) {
    const left = String(a).split('\n');
    const right = String(b).split('\n');
    for (let i = 0; i < Math.max(left.length, right.length); ++i)
        if (left[i] !== right[i]) return `line ${i + 1}:\n  web:   ${String(left[i]).slice(0, 300)}\n  batch: ${String(right[i]).slice(0, 300)}`;
    return 'no difference';
}

module.exports = { runBatch, firstDifference, commandLineOf };
