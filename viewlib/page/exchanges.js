/* SPDX-License-Identifier: Apache-2.0 */
/* Requests and their answers. */
import * as api from './api.js';
import {h, icon, put} from './dom.js';
import {badge, button, copy, deviceList, empty, filterBar, heading, pagedList, pageSize, place, split, statusPill, tries} from './parts.js';
import {bytes, clockTime, fullTime, meaning, number, t} from './text.js';

const longest = 200; /* of a value that is shown whole */
const pretty = 2000000; /* of a body that is read as JSON */

function row(exchange, fields) {
    const failed = exchange.StatusCode !== null && exchange.StatusCode !== undefined && String(exchange.StatusCode) !== '0';
    return h('a', {class: 'row exchange', href: place('exchanges', exchange.Exchange, fields)},
        h('time', {title: fullTime(exchange.Time)}, clockTime(exchange.Time)),
        h('span', {class: 'main'}, h('span', {class: 'line'}, h('code', {class: 'method'}, exchange.Method), h('code', {class: 'path'}, exchange.Path)),
            h('span', {class: 'below'}, [exchange.Device || exchange.Client, exchange.Reason].filter(Boolean).join(' · '))),
        h('span', {class: 'tail'}, exchange.Fault ? badge(t('byFault', exchange.Fault), 'alert') : null,
            failed ? badge(`code ${exchange.StatusCode}`, 'warn') : null,
            exchange.Complete === false ? badge(t('incomplete'), 'warn') : null, statusPill(exchange.Status)),
        h('span', {class: 'number'}, `${(exchange.Ms || 0).toFixed(1)} ms`), h('span', {class: 'number size'}, bytes(exchange.RequestBytes)));
}

/* JSON in colours, long texts cut unless all is asked for. */
function coloured(value, whole, indent = '') {
    if (typeof value === 'string') {
        const cut = !whole && value.length > longest;
        return [h('span', {class: 'j-text'}, JSON.stringify(cut ? value.slice(0, 60) : value).replace(/"$/, cut ? '…"' : '"')),
            cut ? h('span', {class: 'hint'}, t('characters', number(value.length))) : null];
    }
    if (value === null || typeof value !== 'object') {
        return h('span', {class: 'j-literal'}, JSON.stringify(value));
    }
    const many = Array.isArray(value);
    const entries = Object.entries(value);
    if (entries.length === 0) {
        return many ? '[]' : '{}';
    }
    const inner = indent + '  ';
    return [many ? '[' : '{', entries.map(([key, item], index) => [
        '\n' + inner, many ? null : [h('span', {class: 'j-key'}, JSON.stringify(key)), ': '], coloured(item, whole, inner),
        index + 1 < entries.length ? ',' : '']), '\n' + indent + (many ? ']' : '}')];
}

function bodyView(text, base64, cut) {
    if (base64) {
        return [h('p', {class: 'muted'}, t('binary', bytes(Math.floor(base64.length * 3 / 4)))),
            h('pre', {class: 'body', tabindex: 0}, base64.slice(0, 400) + (base64.length > 400 ? '…' : ''))];
    }
    if (!text) {
        return h('p', {class: 'muted'}, t('noBody'));
    }
    const shown = h('pre', {class: 'body', tabindex: 0});
    let parsed;
    try {
        parsed = text.length <= pretty ? JSON.parse(text) : undefined;
    } catch {
        parsed = undefined;
    }
    let whole = false;
    let json = false;
    const toggle = button('', () => {
        whole = !whole;
        draw();
    }, {kind: 'quiet'});
    const draw = () => {
        json = parsed !== undefined;
        put(shown, json ? coloured(parsed, whole) : whole || text.length <= 20000 ? text : text.slice(0, 20000) + '…');
        put(toggle, whole ? t('shorten') : t('whole'));
    };
    draw();
    const long = /"[^"]{200}/.test(text) || (!json && text.length > 20000);
    return [cut ? h('p', {class: 'muted'}, t('cut')) : null, long ? toggle : null, shown];
}

const headerTable = (headers) => h('table', {class: 'headers'}, h('tbody', {}, (headers || []).map(([name, value]) =>
    h('tr', {}, h('th', {scope: 'row'}, name), h('td', {}, value)))));

function timing(exchange) {
    const parts = Object.entries(exchange.Timing || {}).filter(([, value]) => Number.isFinite(value) && value >= 0);
    const whole = parts.reduce((sum, [, value]) => sum + value, 0);
    if (parts.length === 0) {
        return null;
    }
    return h('section', {}, h('h3', {}, t('timing')), h('dl', {class: 'timing'}, parts.map(([name, value], index) => [h('dt', {}, name),
        h('dd', {}, h('span', {class: 'bar-track'}, h('span', {class: `bar bar-${index % 4}`, place: {width: `${whole > 0 ? 100 * value / whole : 0}%`}})),
            h('span', {class: 'number'}, `${value.toFixed(1)} ms`))])));
}

const quote = (text) => `'${String(text).replace(/'/g, "'\\''")}'`;

function asCurl(exchange, url) {
    const left = /^(host|content-length|authorization|expect|connection|accept-encoding)$/i;
    const headers = (exchange.RequestHeaders || []).filter(([name]) => !left.test(name)).map(([name, value]) => `  -H ${quote(`${name}: ${value}`)}`);
    const body = exchange.RequestBody ? [`  --data-binary ${quote(exchange.RequestBody)}`] : [];
    return [`curl -X ${exchange.Method}`, ...headers, ...body, `  ${quote(url + exchange.Path)}`].join(' \\\n');
}

function detail(app, exchange) {
    const code = exchange.StatusCode;
    const fact = (name, ...content) => h('div', {}, h('dt', {}, t(name)), h('dd', {}, content));
    return h('div', {class: 'exchange-detail'},
        h('p', {class: 'request-line'}, h('code', {class: 'method'}, exchange.Method), h('code', {class: 'path'}, exchange.Path), statusPill(exchange.Status)),
        h('dl', {class: 'grid-facts'}, fact('time', fullTime(exchange.Time)), fact('client', h('code', {}, exchange.Client)),
            fact('device', exchange.Device ? h('code', {}, exchange.Device) : t('noDevice')),
            code === null || code === undefined ? null : fact('statusCode', String(code), meaning('StatusCode', code) ? ` · ${meaning('StatusCode', code)}` : ''),
            exchange.Reason ? fact('reason', exchange.Reason) : null,
            exchange.Fault ? fact('faults', h('a', {href: '#/faults'}, t('byFault', exchange.Fault))) : null),
        h('div', {class: 'card-tools'}, button(t('asCurl'), () => copy(app, asCurl(exchange, (app.status && app.status.Url) || location.origin)),
            {name: 'copy', kind: 'quiet'})),
        timing(exchange),
        h('section', {}, h('h3', {}, t('request'), h('span', {class: 'count'}, bytes(exchange.RequestBytes))), headerTable(exchange.RequestHeaders),
            bodyView(exchange.RequestBody, exchange.RequestBodyBase64, exchange.RequestBodyCut)),
        h('section', {}, h('h3', {}, t('answer'), h('span', {class: 'count'}, bytes(exchange.AnswerBytes))), headerTable(exchange.AnswerHeaders),
            bodyView(exchange.AnswerBody, exchange.AnswerBodyBase64, exchange.AnswerBodyCut)));
}

export function exchangesView(app) {
    let fields = {};
    const load = async (before) => {
        const answer = await api.get('/api/exchanges' + api.query({...fields, Before: before, Limit: pageSize}));
        return {rows: answer.Exchanges, total: answer.Total};
    };
    const list = pagedList(app, {
        load, row: (exchange) => row(exchange, fields), key: (exchange) => exchange.Exchange, selector: 'a.exchange', label: t('exchanges'), kind: 'rows',
        none: () => (Object.keys(fields).length > 0 ? empty(app, t('nothingFits')) : empty(app, t('exchangesEmpty'), tries.register(app))),
    });
    const exporter = (name, text) => h('a', {class: 'button', id: `export-${name}`, download: `viewlibd.${name}`, title: t('exportHint')}, icon('download'), text);
    const exports = [exporter('har', t('exportHar')), exporter('jsonl', t('exportLines'))];
    const filters = filterBar([
        {name: 'Path', label: t('path'), hint: t('pathHint')},
        {name: 'Device', label: t('device'), list: 'known-devices'},
        {name: 'Method', label: t('method'), type: 'select', options: [['', t('anyMethod')], ...['POST', 'GET', 'PUT', 'DELETE'].map((name) => [name, name])]},
        {name: 'Status', label: t('status'), type: 'select', options: [['', t('anyStatus')], ...['200', '400', '401', '403', '404', '413', '500', '503'].map((name) => [name, name]), ['0', t('noAnswer')]]},
        {name: 'Text', label: t('text'), hint: t('textHint')},
    ], (values) => app.go(place('exchanges', null, values)));
    const panes = split(list, {
        title: (id) => t('exchange', id), home: () => place('exchanges', null, fields),
        open: async (id) => detail(app, await api.get(`/api/exchanges/${encodeURIComponent(id)}`)),
    });
    let loaded = null;
    return {
        element: h('div', {class: 'view wide'}, heading(t('exchanges'), exports), filters.element, deviceList(), panes.element),
        show({id, fields: given}) {
            const key = JSON.stringify(given);
            if (loaded !== key && (id === null || loaded === null)) {
                fields = given;
                loaded = key;
                filters.set(fields);
                exports.forEach((link) => link.setAttribute('href', `/api/exchanges.${link.id.slice('export-'.length)}${api.query(fields)}`));
                list.reload();
            }
            panes.show(id);
        },
        events(events, {first, missed}) {
            if (missed) {
                list.reload();
                return;
            }
            const mine = first ? [] : events.filter((event) => event.Type === 'exchange' && (!fields.Method || event.Method === fields.Method) &&
                (!fields.Device || event.Device === fields.Device) && (!fields.Status || String(event.Status) === fields.Status));
            if (mine.length > 0) {
                list.offer(mine.length);
            }
        },
        escape() {
            if (panes.shown !== null) {
                app.go(place('exchanges', null, fields));
            }
        },
    };
}
