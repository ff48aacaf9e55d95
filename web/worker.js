// The worker behind Tavrelle.load(): it instantiates the engine from the bytes it carries (no
// request leaves the page) and answers one request at a time. A run holds the worker until it
// ends, so cancelling a run ends the worker; the page then starts a fresh one.
'use strict';

function bytesOfBase64(text) {
    const binary = atob(text);
    const bytes = new Uint8Array(binary.length);
    for (let i = 0; i < binary.length; ++i) bytes[i] = binary.charCodeAt(i);
    return bytes;
}

const engineReady = TavrelleEngine({
    wasmBinary: bytesOfBase64(tavrelleWasmBase64),
    print: () => {},
    printErr: (text) => console.warn('tavrelle engine:', text),
});

function answer(engine, request) {
    switch (request.kind) {
        case 'describe':
            return engine.describeFile(request.name, request.bytes);
        case 'run':
            return engine.runStudy(request.name, request.bytes, request.arguments,
                (done, total, number, name, analysed) =>
                    postMessage({ id: request.id, kind: 'progress', done, total, number, name, analysed }));
        default:
            return { error: `Unknown request '${request.kind}'.` };
    }
}

self.onmessage = (event) => {
    const request = event.data;
    engineReady.then((engine) => {
        let value;
        try {
            value = answer(engine, request);
        } catch (error) {
            value = { error: `The engine failed: ${error && error.message ? error.message : error}` };
        }
        postMessage({ id: request.id, kind: 'result', value });
    });
};

engineReady.then(
    (engine) => postMessage({ kind: 'ready', version: engine.version() }),
    (error) => postMessage({ kind: 'failed', message: String(error && error.message ? error.message : error) }));
