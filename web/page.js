// The page over Tavrelle.load(): a file, a motif per locus, the settings, a run with progress,
// and the results the engine's reports hold. Everything it shows of a study is the engine's:
// the overview table, the heat map, the graphs and the verdict texts come from the HTML report,
// the estimates and their intervals from the JSON report.
'use strict';

(function () {
    const $ = (id) => document.getElementById(id);

    // The formats the engine reads, one line each: how the page names them and the endings the
    // file dialog offers. Workbooks are offered too, for the engine's message about CSV export.
    const formats = [
        ['Genepop (three-digit alleles)', ['.gen', '.genepop', '.txt', '.dat']],
    ];
    const workbookEndings = ['.xls', '.xlsx'];

    const motifChoices = [['', 'none'], ['1', '1 bp'], ['2', '2 bp (di)'], ['3', '3 bp (tri)'],
        ['4', '4 bp (tetra)'], ['5', '5 bp (penta)'], ['6', '6 bp (hexa)']];

    // The estimators of the JSON report, in the order the desktop program lists them.
    const estimators = [['velmaret', 'Velmaret'], ['chakraborty', 'Chakraborty'],
        ['brookfield1', 'Brookfield 1'], ['brookfield2', 'Brookfield 2'], ['em', 'EM'],
        ['em_missing', 'EM, blanks missing'], ['joint', 'Joint with F'],
        ['em_failure', 'EM with failures']];

    const state = { tavrelle: null, file: null, study: null, report: null };

    function engine() {
        if (!state.tavrelle) {
            state.tavrelle = Tavrelle.load();
            state.tavrelle.then((tv) => { $('version').textContent = tv.version; },
                (error) => showError('file-error', error.message));
        }
        return state.tavrelle;
    }

    function showError(id, message) {
        const box = $(id);
        box.textContent = message || '';
        box.hidden = !message;
    }

    function element(tag, properties = {}, children = []) {
        const node = document.createElement(tag);
        Object.assign(node, properties);
        for (const child of [].concat(children))
            node.append(child instanceof Node ? child : document.createTextNode(String(child)));
        return node;
    }

    function fixed(value, decimals) {
        return typeof value === 'number' ? value.toFixed(decimals) : '–';
    }

    function interval(pair) {
        return Array.isArray(pair) ? `${fixed(pair[0], 4)} – ${fixed(pair[1], 4)}` : '–';
    }

    // ---- the file -------------------------------------------------------------------------

    async function openFile(file) {
        showError('file-error', '');
        showError('run-error', '');
        $('file-status').textContent = `Reading ${file.name}…`;
        const bytes = new Uint8Array(await file.arrayBuffer());
        let info;
        try {
            info = await (await engine()).describe(bytes, file.name);
        } catch (error) {
            $('file-status').textContent = '';
            showError('file-error', error.message);
            return;
        }
        state.file = { name: file.name, bytes, info };
        $('file-status').textContent = `${file.name}: “${info.title}”, ${info.populations} ` +
            `population${info.populations === 1 ? '' : 's'}, ${info.loci.length} loci.`;
        fillLoci(info.loci);
        $('motif-section').hidden = false;
        $('settings-section').hidden = false;
        $('results-section').hidden = true;
    }

    function motifSelect(id, label) {
        const select = element('select', { id });
        if (label) select.setAttribute('aria-label', label);
        for (const [value, text] of motifChoices) select.append(element('option', { value }, text));
        return select;
    }

    function fillLoci(loci) {
        const body = $('loci-table').tBodies[0];
        body.replaceChildren();
        loci.forEach((locus, index) => {
            const select = motifSelect(`motif-${index}`, `Repeat motif of ${locus}`);
            select.dataset.locus = locus;
            body.append(element('tr', {}, [element('th', { scope: 'row' }, locus), element('td', {}, select)]));
        });
    }

    function motifSelects() {
        return [...$('loci-table').querySelectorAll('select')];
    }

    // ---- the run --------------------------------------------------------------------------

    function options() {
        const repeat = {};
        for (const select of motifSelects())
            if (select.value) repeat[select.dataset.locus] = Number(select.value);
        return {
            repeat,
            randomisations: $('randomisations').value.trim(),
            confidence: $('confidence').value,
            seed: $('seed').value.trim(),
            bootstrap: $('bootstrap').value.trim(),
            maxAlleleSize: $('max-allele-size').value.trim(),
            onSuspect: $('on-suspect').value,
        };
    }

    function setRunning(running) {
        $('run-button').disabled = running;
        $('cancel-button').disabled = !running;
        $('file-input').disabled = running;
        $('progress').hidden = !running;
    }

    async function run() {
        if (!state.file) return;
        showError('run-error', '');
        const missing = motifSelects().filter((select) => !select.value).map((s) => s.dataset.locus);
        if (missing.length) {
            showError('run-error', `Please select a Repeat Motif for all Loci (none yet for ${missing.join(', ')}).`);
            return;
        }
        const tv = await engine();
        const total = state.file.info.populations;
        setRunning(true);
        $('progress').max = total;
        $('progress').value = 0;
        $('progress-text').textContent = `Analysing population 1 of ${total}…`;
        try {
            const study = await tv.study(state.file.bytes, state.file.name, options(), {
                onProgress: (p) => {
                    $('progress').max = p.total;
                    $('progress').value = p.done;
                    $('progress-text').textContent = `${p.done} of ${p.total} populations done ` +
                        `(${p.name}${p.analysed ? '' : ': not analysed'}).`;
                },
            });
            $('progress-text').textContent = `Done: ${study.analysed} analysed` +
                (study.stopped ? `, ${study.stopped} not analysed.` : '.');
            showResults(study);
        } catch (error) {
            if (error.name === 'AbortError') {
                $('progress-text').textContent = 'The run was cancelled; nothing was kept.';
            } else {
                $('progress-text').textContent = '';
                showError('run-error', error.message);
            }
        } finally {
            setRunning(false);
        }
    }

    // ---- the results ----------------------------------------------------------------------

    function showResults(study) {
        state.study = study;
        // The report's own style sheet is not the page's, and the page's policy refuses it.
        const withoutStyle = study.report.replace(/<style>[\s\S]*?<\/style>/, '');
        state.report = new DOMParser().parseFromString(withoutStyle, 'text/html');
        const report = state.report;
        const json = study.json;
        $('run-summary').textContent = `Seed ${json.seed}, ${json.randomisations} randomisations, ` +
            `${json.populations.length} population${json.populations.length === 1 ? '' : 's'}.` +
            (study.notes ? ` ${study.notes}` : '');

        // The overview comes in groups of loci; the graphs refer to the report's shared markers
        // and frames, which the page holds once.
        $('overview').replaceChildren(...[...report.querySelectorAll('table.overview')]
            .map((table) => document.importNode(table, true)));
        const defs = report.querySelector('svg.defs');
        const held = document.getElementById('report-defs');
        if (held) held.remove();
        if (defs) {
            const copy = document.importNode(defs, true);
            copy.id = 'report-defs';
            document.body.append(copy);
        }
        for (const link of $('overview').querySelectorAll('a[href^="#p"]'))
            link.setAttribute('aria-label', `${link.textContent.trim()}: show this population and locus`);

        const heading = [...report.querySelectorAll('h2')].find((h) => h.textContent === 'Heat map');
        const map = heading && heading.nextElementSibling;
        $('heat-map').replaceChildren(map ? document.importNode(map, true) : '');

        const body = $('population-table').tBodies[0];
        body.replaceChildren();
        for (const p of json.populations) {
            const f = p.inbreeding;
            body.append(element('tr', {}, [
                element('th', { scope: 'row' }, `${p.number} ${p.name}`),
                element('td', {}, p.samples),
                ...(f ? [element('td', {}, fixed(f.f, 3)), element('td', {}, interval(f.interval)),
                    element('td', {}, f.model), element('td', {}, f.verdict)]
                    : [element('td', { colSpan: 4 }, p.error ? `Not analysed: ${p.error}` : '–')]),
            ]));
        }
        $('locus-detail').hidden = true;
        $('results-section').hidden = false;
        $('results-heading').scrollIntoView({ block: 'start' });
    }

    function showLocus(populationNumber, column) {
        const json = state.study.json;
        const population = json.populations.find((p) => p.number === populationNumber);
        // The report's folded details of the locus: its summary names the locus.
        const section = state.report.getElementById(`p${populationNumber}-l${column}`);
        const summary = section && section.querySelector('summary');
        const locusName = summary ? summary.textContent.replace(/^Locus /, '') : '';
        const locus = population && population.loci.find((l) => l.name === locusName);
        const detail = $('locus-detail');
        detail.replaceChildren();
        if (!population || !locus || !section) return;

        detail.append(element('h3', {}, `${population.name}, locus ${locusName}`));
        for (const graph of section.querySelectorAll('svg.graph'))
            detail.append(element('figure', {}, document.importNode(graph, true)));
        for (const text of section.querySelectorAll('pre'))
            detail.append(document.importNode(text, true));

        const estimates = element('table', { className: 'estimates' });
        estimates.append(element('caption', {}, 'Null allele frequency: every estimate with its bootstrap interval'));
        estimates.append(element('tr', {}, [element('th', { scope: 'col' }, 'Estimator'),
            element('th', { scope: 'col' }, 'Estimate'), element('th', { scope: 'col' }, 'Interval')]));
        for (const [key, label] of estimators) {
            if (!(key in locus.estimates)) continue;
            estimates.append(element('tr', {}, [element('th', { scope: 'row' }, label),
                element('td', {}, fixed(locus.estimates[key], 4)),
                element('td', {}, interval((locus.estimate_intervals || {})[key]))]));
        }
        if ('failure_rate' in locus)
            estimates.append(element('tr', {}, [element('th', { scope: 'row' }, 'Failure rate'),
                element('td', {}, fixed(locus.failure_rate, 4)),
                element('td', {}, interval(locus.failure_rate_interval))]));
        detail.append(estimates);

        const f = population.inbreeding;
        if (f)
            detail.append(element('p', { className: 'inbreeding' },
                `Population ${population.number} ${population.name}: F = ${fixed(f.f, 3)} ` +
                `(${interval(f.interval)}), model “${f.model}”. ${f.verdict}`));
        detail.append(element('p', {}, element('button', { type: 'button', id: 'back-to-overview' }, 'Back to the overview')));
        detail.hidden = false;
        detail.focus();
        detail.scrollIntoView({ block: 'start' });
    }

    // ---- downloads ------------------------------------------------------------------------

    function download(text, suffix, type) {
        const base = state.file.name.replace(/\.[^.]*$/, '') || 'tavrelle';
        const url = URL.createObjectURL(new Blob([text], { type }));
        const link = element('a', { href: url, download: base + suffix });
        document.body.append(link);
        link.click();
        link.remove();
        setTimeout(() => URL.revokeObjectURL(url), 10000);
    }

    // ---- wiring ---------------------------------------------------------------------------

    function wire() {
        engine();
        $('file-input').accept = [...formats.flatMap(([, endings]) => endings), ...workbookEndings].join(',');
        $('formats-text').textContent = `or drop it here. Read: ${formats.map(([name]) => name).join(', ')}.`;
        const allMotif = $('all-motif');
        for (const [value, text] of motifChoices) allMotif.append(element('option', { value }, text));
        allMotif.value = '2';
        $('all-button').addEventListener('click', () => {
            for (const select of motifSelects()) select.value = allMotif.value;
        });
        $('file-input').addEventListener('change', (event) => {
            if (event.target.files.length) openFile(event.target.files[0]);
        });
        const zone = $('drop-zone');
        zone.addEventListener('dragover', (event) => {
            event.preventDefault();
            zone.classList.add('over');
        });
        zone.addEventListener('dragleave', () => zone.classList.remove('over'));
        zone.addEventListener('drop', (event) => {
            event.preventDefault();
            zone.classList.remove('over');
            if (event.dataTransfer.files.length) openFile(event.dataTransfer.files[0]);
        });
        $('run-button').addEventListener('click', run);
        $('cancel-button').addEventListener('click', async () => (await engine()).cancel());
        $('overview').addEventListener('click', (event) => {
            const link = event.target.closest('a[href^="#p"]');
            if (!link) return;
            event.preventDefault();
            const [, population, column] = link.getAttribute('href').match(/^#p(\d+)-l(\d+)$/) || [];
            if (population) showLocus(Number(population), Number(column));
            state.lastCell = link;
        });
        $('locus-detail').addEventListener('click', (event) => {
            if (event.target.id !== 'back-to-overview') return;
            $('locus-detail').hidden = true;
            if (state.lastCell) state.lastCell.focus();
        });
        $('download-json').addEventListener('click', () => download(state.study.jsonText, '.json', 'application/json'));
        $('download-csv').addEventListener('click', () => download(state.study.csv, '.csv', 'text/csv'));
        $('download-report').addEventListener('click', () => download(state.study.report, '-report.html', 'text/html'));
    }

    wire();
})();
