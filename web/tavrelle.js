// Tavrelle in the browser: the engine in a Web Worker, behind a small promise-based module.
//
//   const tv = await Tavrelle.load();
//   const study = await tv.analyse(fileBytes, 'data.gen', { repeat: 2, seed: 12345 });
//
// analyse() gives the object `tavrelle-batch --json` writes, report() and csv() the texts of
// --report and --csv; the options take the batch program's settings by the same names and are
// checked by the batch program's own rules. Nothing leaves the page: the engine is carried inside
// this file and started from a Blob.
(function (root) {
    'use strict';

    // The worker's code, put here by scripts/build-web.
    const workerSource = /* WORKER SOURCE */ "";

    // Each option as the batch program's command line spells it.
    const optionWords = {
        repeat: (value) => (typeof value === 'object' && value !== null
            ? Object.entries(value).flatMap(([locus, motif]) => ['--repeat', `${locus}=${motif}`])
            : ['--repeat', String(value)]),
        seed: (value) => ['--seed', String(value)],
        randomisations: (value) => ['--randomisations', String(value)],
        confidence: (value) => ['--confidence', String(value)],
        bootstrap: (value) => ['--bootstrap', String(value)],
        maxAlleleSize: (value) => ['--max-allele-size', String(value)],
        onSuspect: (value) => ['--on-suspect', String(value)],
        populations: (value) => [].concat(value).flatMap((number) => ['--population', String(number)]),
    };

    function commandLineOf(options) {
        const words = [];
        for (const [name, value] of Object.entries(options || {})) {
            if (value === undefined || value === null || value === '') continue;
            if (!(name in optionWords))
                throw new TypeError(`Tavrelle: unknown option '${name}' (known: ${Object.keys(optionWords).join(', ')}).`);
            words.push(...optionWords[name](value));
        }
        return words;
    }

    function bytesOf(data) {
        if (data instanceof Uint8Array) return data;
        if (data instanceof ArrayBuffer) return new Uint8Array(data);
        if (ArrayBuffer.isView(data)) return new Uint8Array(data.buffer, data.byteOffset, data.byteLength);
        if (typeof data === 'string') return new TextEncoder().encode(data);
        throw new TypeError('Tavrelle: give the file as an ArrayBuffer, a Uint8Array or a string.');
    }

    function cancelledError() {
        const error = new Error('The run was cancelled.');
        error.name = 'AbortError';
        return error;
    }

    function startWorker() {
        const url = URL.createObjectURL(new Blob([workerSource], { type: 'text/javascript' }));
        const worker = new Worker(url);
        URL.revokeObjectURL(url);
        return new Promise((resolve, reject) => {
            worker.onmessage = (event) => {
                if (event.data.kind === 'ready') resolve({ worker, version: event.data.version });
                else reject(new Error(`Tavrelle: the engine did not start: ${event.data.message}`));
            };
            worker.onerror = (event) => {
                event.preventDefault();
                reject(new Error(`Tavrelle: the engine did not start: ${event.message}`));
            };
        });
    }

    // One engine, one request at a time; cancelling ends the worker and starts another.
    class Engine {
        constructor(started) {
            this.version = started.version;
            this.adopt(started.worker);
            this.queue = Promise.resolve();
            this.nextId = 1;
            this.pending = null;
            this.lastStudy = null;
        }

        adopt(worker) {
            this.worker = worker;
            this.worker.onmessage = (event) => this.receive(event.data);
            this.worker.onerror = (event) => {
                event.preventDefault();
                this.fail(new Error(`Tavrelle: the engine failed: ${event.message}`));
            };
        }

        receive(message) {
            const pending = this.pending;
            if (!pending || message.id !== pending.id) return;
            if (message.kind === 'progress') {
                const { done, total, number, name, analysed } = message;
                if (pending.onProgress) pending.onProgress({ done, total, number, name, analysed });
                return;
            }
            this.pending = null;
            const value = message.value;
            if (value && value.error !== undefined) {
                const error = new Error(value.error);
                error.usage = Boolean(value.usage);
                pending.reject(error);
            } else {
                pending.resolve(value);
            }
        }

        fail(error) {
            const pending = this.pending;
            this.pending = null;
            if (pending) pending.reject(error);
        }

        request(kind, fields, hooks = {}) {
            const run = () => new Promise((resolve, reject) => {
                if (hooks.signal && hooks.signal.aborted) {
                    reject(cancelledError());
                    return;
                }
                const id = this.nextId++;
                this.pending = { id, resolve, reject, onProgress: hooks.onProgress };
                if (hooks.signal) hooks.signal.addEventListener('abort', () => this.cancel(), { once: true });
                this.worker.postMessage({ id, kind, ...fields });
            });
            const result = this.queue.then(run, run);
            this.queue = result.catch(() => {});
            return result;
        }

        // Ends the request under way; the engine is ready again when the promise resolves.
        cancel() {
            if (!this.pending) return this.queue;
            this.worker.terminate();
            this.lastStudy = null;
            this.fail(cancelledError());
            const restarted = startWorker().then((started) => this.adopt(started.worker));
            this.queue = restarted.catch(() => {});
            return restarted;
        }

        // The whole study: {json (the parsed object), jsonText, csv, report, notes, analysed,
        // stopped}. With `reuse`, the same data, file name and options give the study last made,
        // so that analyse(), report() and csv() in turn run once and agree even with a clock seed.
        study(data, fileName, options = {}, hooks = {}, reuse = false) {
            const bytes = bytesOf(data);
            const words = commandLineOf(options);
            const key = JSON.stringify([fileName, words]);
            const last = this.lastStudy;
            if (reuse && last && last.data === data && last.key === key) return last.result;
            const result = this.request('run', { name: String(fileName), bytes, arguments: words }, hooks)
                .then((value) => ({ ...value, jsonText: value.json, json: JSON.parse(value.json) }));
            this.lastStudy = { data, key, result };
            result.catch(() => {
                if (this.lastStudy && this.lastStudy.result === result) this.lastStudy = null;
            });
            return result;
        }
    }

    // What Tavrelle.load() gives.
    class Tavrelle {
        constructor(engine) {
            this.engine = engine;
            this.version = engine.version;
        }

        // The file's title, locus names and number of populations, as the page shows them before
        // a run.
        describe(data, fileName) {
            return this.engine.request('describe', { name: String(fileName), bytes: bytesOf(data) });
        }

        // The JSON report as an object. hooks: {onProgress({done, total, number, name, analysed}),
        // signal (an AbortSignal)}.
        async analyse(data, fileName, options, hooks) {
            return (await this.engine.study(data, fileName, options, hooks, true)).json;
        }

        // The HTML study report of --report; after analyse() on the same data and options, of
        // that same run.
        async report(data, fileName, options, hooks) {
            return (await this.engine.study(data, fileName, options, hooks, true)).report;
        }

        // The tidy table of --csv, as report() does.
        async csv(data, fileName, options, hooks) {
            return (await this.engine.study(data, fileName, options, hooks, true)).csv;
        }

        // A new run with all three reports at once, as the page uses it.
        study(data, fileName, options, hooks) {
            return this.engine.study(data, fileName, options, hooks);
        }

        cancel() {
            return this.engine.cancel();
        }

        close() {
            this.engine.worker.terminate();
        }
    }

    root.Tavrelle = {
        async load() {
            return new Tavrelle(new Engine(await startWorker()));
        },
        commandLineOf,
    };
})(typeof self !== 'undefined' ? self : this);
