/* SPDX-License-Identifier: Apache-2.0 */
/* What several views are made of: headings, filters, empty states, lists in pages, a list with a detail beside it. */
import * as api from './api.js';
import {h, icon, put, roving} from './dom.js';
import {number, t} from './text.js';

export const pageSize = 50;

export const heading = (text, ...tools) => h('div', {class: 'heading'}, h('h1', {}, text), h('div', {class: 'tools'}, tools));

export function button(text, onclick, {name = null, kind = '', hint = null} = {}) {
    return h('button', {type: 'button', class: kind, onclick, title: hint}, name && icon(name), text);
}

export async function copy(app, text) {
    await app.act(() => navigator.clipboard.writeText(text), t('copied'));
}

/* A line to try when there is nothing to see yet. */
export function empty(app, text, command) {
    return h('div', {class: 'empty'}, h('p', {}, text),
        command && h('div', {class: 'try'}, h('span', {}, t('tryThis')), h('pre', {tabindex: 0}, command),
            button(t('copy'), () => copy(app, command), {name: 'copy', kind: 'quiet'})));
}

const base = (app) => (app.status && app.status.Url) || location.origin;
const sampleDevice = '34020000001190000001';

export const tries = {
    register: (app) => `curl --digest -u ${(app.status && app.status.User) || 'admin'}:PASSWORD -H 'User-Identify: ${sampleDevice}' \\\n` +
        "  -H 'Content-Type: application/VIID+JSON' \\\n" +
        `  -d '{"RegisterObject":{"DeviceID":"${sampleDevice}"}}' \\\n  ${base(app)}/VIID/System/Register`,
    device: (app) => `pubsec-device --server ${base(app)} --user ${(app.status && app.status.User) || 'admin'} --password PASSWORD`,
    tour: (app) => `pubsec-device --server ${base(app)} --user ${(app.status && app.status.User) || 'admin'} --password PASSWORD --tour`,
    upload: (app) => "curl -H 'Content-Type: application/octet-stream' --data-binary @video.ps \\\n" +
        `  '${base(app)}/VIID/Upload/video.ps?position=0'`,
};

/* fields: [{name, label, type: 'text' | 'select' | 'check', options, hint}]; onchange gets the values that are set. */
export function filterBar(fields, onchange) {
    const inputs = {};
    let due = null;
    const later = () => {
        clearTimeout(due);
        due = setTimeout(now, 300);
    };
    const now = () => {
        clearTimeout(due);
        onchange(values());
    };
    const values = () => Object.fromEntries(fields.map(({name, type}) =>
        [name, type === 'check' ? (inputs[name].checked ? '1' : '') : inputs[name].value.trim()]).filter(([, value]) => value !== ''));
    const make = (field) => {
        const id = `filter-${field.name}`;
        if (field.type === 'select') {
            inputs[field.name] = h('select', {id, onchange: now}, field.options.map(([value, text]) => h('option', {value}, text)));
        } else if (field.type === 'check') {
            inputs[field.name] = h('input', {id, type: 'checkbox', onchange: now});
            return h('label', {class: 'check', for: id}, inputs[field.name], field.label);
        } else {
            inputs[field.name] = h('input', {
                id, type: 'search', placeholder: field.hint || '', oninput: later, autocomplete: 'off', spellcheck: 'false',
                list: field.list || null,
            });
        }
        return h('label', {class: 'field', for: id}, h('span', {}, field.label), inputs[field.name]);
    };
    const clear = button(t('clear'), () => {
        set({});
        now();
        Object.values(inputs)[0].focus();
    }, {kind: 'quiet clear'});
    const set = (given) => {
        for (const {name, type} of fields) {
            if (type === 'check') {
                inputs[name].checked = given[name] === '1';
            } else if (document.activeElement !== inputs[name] || (given[name] || '') === '') {
                const value = given[name] || '';
                if (type === 'select' && ![...inputs[name].options].some((option) => option.value === value)) {
                    inputs[name].append(h('option', {value}, value));
                }
                inputs[name].value = value;
            }
        }
        clear.hidden = Object.keys(given).length === 0;
        if (!clear.hidden) {
            element.classList.add('unfolded');
            toggle.setAttribute('aria-expanded', 'true');
        }
    };
    /* Only where the page is narrow. */
    const toggle = h('button', {type: 'button', class: 'filter-toggle', 'aria-expanded': 'false', onclick: () => {
        toggle.setAttribute('aria-expanded', String(element.classList.toggle('unfolded')));
    }}, t('filter'));
    const element = h('form', {class: 'filters', role: 'search', 'aria-label': t('filter'), onsubmit: (event) => {
        event.preventDefault();
        now();
    }}, toggle, fields.map(make), clear);
    return {element, set};
}

/*
 * A list of the newest, in pages of fifty. load(before) gives {rows, total}, row(item) an element that matches
 * selector, key(item) its number. What arrives while the user reads is offered, not pushed in.
 */
export function pagedList(app, {load, row, key, selector, label, kind, none}) {
    const items = h('ul', {class: kind, 'aria-label': label});
    const news = h('div', {class: 'news'});
    const more = button(t('more'), () => fetchMore(), {kind: 'more'});
    const count = h('span', {class: 'total'});
    const foot = h('div', {class: 'list-foot'}, more, count);
    const element = h('div', {class: 'listing'}, news, items, foot);
    const keys = roving(items, selector);
    let last = null;
    let turn = 0;
    let arrived = 0;
    let due = null;

    const settle = (total) => {
        const shown = items.children.length;
        count.textContent = shown < total ? t('shown', number(shown), number(total)) : shown > 0 ? t('total', number(total)) : '';
        more.hidden = shown >= total;
        keys.settle();
    };
    const add = (rows) => {
        rows.forEach((item) => {
            const made = row(item);
            made.dataset.key = key(item);
            items.append(h('li', {}, made));
        });
        last = rows.length > 0 ? key(rows[rows.length - 1]) : last;
    };
    const fail = (error) => put(news, h('p', {class: 'error'}, t('failed', error.message)));

    async function reload() {
        const mine = ++turn;
        arrived = 0;
        clearTimeout(due);
        due = null;
        const focused = items.contains(document.activeElement) ? document.activeElement.dataset.key : null;
        try {
            const {rows, total} = await load(null);
            if (mine !== turn) {
                return;
            }
            put(news);
            put(items);
            last = null;
            add(rows);
            settle(total);
            if (rows.length === 0) {
                put(news, none());
            }
            element.dispatchEvent(new CustomEvent('loaded'));
            const again = focused && items.querySelector(`[data-key="${focused}"]`);
            if (again) {
                again.focus();
            }
        } catch (error) {
            if (mine === turn) {
                fail(error);
            }
        }
    }

    async function fetchMore() {
        const mine = ++turn;
        const atEnd = items.lastElementChild;
        more.disabled = true;
        try {
            const {rows, total} = await load(last);
            if (mine === turn) {
                add(rows);
                settle(rows.length === 0 ? items.children.length : total);
                element.dispatchEvent(new CustomEvent('loaded'));
                const next = atEnd && atEnd.nextElementSibling;
                if (next) {
                    next.querySelector(selector).focus({preventScroll: true});
                }
            }
        } catch (error) {
            fail(error);
        }
        more.disabled = false;
    }

    /* So many have come; shown at once while the beginning of the list is in sight and nobody is in it. */
    function offer(amount) {
        arrived += amount;
        const reading = items.children.length > pageSize || items.contains(document.activeElement) ||
            (items.children.length > 0 && element.getBoundingClientRect().top < -40) || document.querySelector('.split.open');
        if (!reading) {
            due = due || setTimeout(() => { due = null; reload(); }, 300);
        } else {
            put(news, button(t('arrived', number(arrived)), () => reload(), {kind: 'pill'}));
        }
    }

    return {element, items, reload, offer, keys};
}

/*
 * A list, and the detail of what is chosen beside it, or over it where the page is narrow. open(id) gives the content of
 * the detail; Esc and the button close it and put the focus back.
 */
export function split(list, {title, home, open}) {
    const detail = h('section', {class: 'detail', hidden: true, 'aria-label': t('details'), tabindex: -1});
    const element = h('div', {class: 'split'}, h('div', {class: 'list'}, list.element), detail);
    let shown = null;
    let turn = 0;

    const mark = () => {
        for (const item of list.items.querySelectorAll('[data-key]')) {
            if (item.dataset.key === shown) {
                item.setAttribute('aria-current', 'true');
            } else {
                item.removeAttribute('aria-current');
            }
        }
    };

    const neighbour = (step) => {
        const at = list.items.querySelector(`[data-key="${shown}"]`);
        const next = at && (step < 0 ? at.parentElement.previousElementSibling : at.parentElement.nextElementSibling);
        return next && next.querySelector('[data-key]');
    };
    const turns = h('span', {class: 'turns'});
    const turnTo = (step, name, text) => {
        const to = neighbour(step);
        return h('a', {class: 'quiet button', href: to ? to.getAttribute('href') : null, 'aria-disabled': to ? null : 'true',
            title: text, 'aria-label': text}, icon(name));
    };
    const markTurns = () => put(turns, turnTo(-1, 'back', t('newer')), turnTo(1, 'next', t('older')));
    list.element.addEventListener('loaded', () => {
        mark();
        markTurns();
    });

    async function show(id) {
        const mine = ++turn;
        const before = shown;
        shown = id;
        element.classList.toggle('open', id !== null);
        detail.hidden = id === null;
        mark();
        if (id === null) {
            put(detail);
            const item = before && list.items.querySelector(`[data-key="${before}"]`);
            if (item) {
                item.focus();
            }
            return;
        }
        const focused = detail.contains(document.activeElement);
        let content = null;
        try {
            content = await open(id);
        } catch (error) {
            content = h('p', {class: 'error'}, error.status === 404 ? t('gone') : t('failed', error.message));
        }
        if (mine !== turn) {
            return;
        }
        put(detail, h('div', {class: 'detail-bar'}, h('h2', {}, title(id)), turns,
            h('a', {class: 'quiet button close', href: home(), 'aria-label': t('close'), title: `${t('close')} (Esc)`}, icon('close'))),
            h('div', {class: 'detail-body'}, content));
        markTurns();
        detail.scrollTop = 0;
        if (before !== id && (focused || before === null || !list.items.contains(document.activeElement))) {
            detail.focus({preventScroll: true});
            if (getComputedStyle(list.element.parentElement).display === 'none') {
                window.scrollTo(0, 0);
            }
        }
    }

    return {element, show, get shown() { return shown; }};
}

/* The hash that a view goes to with these fields. */
export const place = (name, id, fields) => `#/${name}${id === null ? '' : '/' + id}${api.query(fields)}`;

/* Device identifiers for the filters' inputs. */
export function deviceList() {
    const element = h('datalist', {id: 'known-devices'});
    api.get('/api/devices').then(({Devices}) => put(element, Devices.map(({Device}) => h('option', {value: Device})))).catch(() => {});
    return element;
}

export const badge = (text, kind = '') => h('span', {class: `badge ${kind}`}, text);

/* The state of an answer, 0 for none. */
export function statusPill(status) {
    const kind = status === 0 || !status ? 'none' : status < 300 ? 'good' : status < 400 ? 'turn' : status < 500 ? 'warn' : 'bad';
    return h('span', {class: `status ${kind}`}, status ? String(status) : t('noAnswer'));
}
