/* SPDX-License-Identifier: Apache-2.0 */
/* The frame of the page: navigation, status, language, and the feed that keeps the views up to date. */
import * as api from './api.js';
import {announce, h, icon, put} from './dom.js';
import {currentLanguage, number, setLanguage, t, wireTime} from './text.js';
import {devicesView} from './devices.js';
import {exchangesView} from './exchanges.js';
import {faultsView} from './faults.js';
import {filesView} from './files.js';
import {liveView} from './live.js';
import {objectsView} from './objects.js';

const views = {
    live: liveView, devices: devicesView, objects: objectsView, files: filesView, exchanges: exchangesView, faults: faultsView,
};
const order = Object.keys(views);
const counted = {devices: 'Devices', objects: 'Objects', exchanges: 'Exchanges', faults: 'Faults'};
const kept = 300;

const side = document.getElementById('side');
const main = document.getElementById('main');

/* What the views share. */
const app = {
    status: null,
    events: [], /* the newest first */
    go(path) {
        location.hash = path;
    },
    /* Runs an action of the user and says how it went. */
    async act(action, done) {
        try {
            const result = await action();
            say(typeof done === 'function' ? done(result) : done);
            return result;
        } catch (error) {
            say(t('failed', error.message), true);
            return null;
        }
    },
    say,
};

let current = null; /* {name, view} */
let sideParts = {};

function say(text, bad = false) {
    document.querySelectorAll('.toast').forEach((old) => old.remove());
    const toast = h('div', {class: bad ? 'toast bad' : 'toast'}, text);
    document.body.append(toast);
    announce(text, true);
    setTimeout(() => toast.remove(), bad ? 8000 : 4000);
}

/* "#/objects/5?Kind=Face" */
function route() {
    const [path, search] = location.hash.replace(/^#\/?/, '').split('?');
    const [name, id] = path.split('/');
    return {name: views[name] ? name : 'live', id: id || null, fields: Object.fromEntries(new URLSearchParams(search || ''))};
}

function showRoute() {
    const to = route();
    if (!current || current.name !== to.name) {
        if (current && current.view.close) {
            current.view.close();
        }
        current = {name: to.name, view: views[to.name](app)};
        put(main, current.view.element);
        window.scrollTo(0, 0);
    }
    current.view.show(to);
    document.title = `${t(to.name)} · viewlibd`;
    for (const link of side.querySelectorAll('nav a')) {
        if (link.dataset.view === to.name) {
            link.setAttribute('aria-current', 'page');
        } else {
            link.removeAttribute('aria-current');
        }
    }
}

function buildSide() {
    sideParts = {counts: {}, facts: h('dl', {class: 'facts'}), state: h('p', {class: 'link-state', role: 'status'})};
    const links = order.map((name) => {
        sideParts.counts[name] = h('span', {class: 'count'});
        return h('li', {}, h('a', {href: `#/${name}`, 'data-view': name}, icon(name), h('span', {class: 'label'}, t(name)),
            sideParts.counts[name]));
    });
    const language = h('button', {
        type: 'button', class: 'quiet language', lang: currentLanguage() === 'zh' ? 'en' : 'zh', id: 'language',
        onclick: () => {
            setLanguage(currentLanguage() === 'zh' ? 'en' : 'zh');
            build();
            document.getElementById('language').focus();
        },
    }, t('otherLanguage'));
    put(side,
        h('div', {class: 'brand'}, h('img', {src: '/page/icon.svg', alt: '', width: 32, height: 32}),
            h('div', {}, h('strong', {}, 'viewlibd'), h('span', {}, t('tagline'))), language),
        h('nav', {'aria-label': t('navigation')}, h('ul', {}, links)),
        h('div', {class: 'foot'}, sideParts.facts, sideParts.state));
    document.documentElement.lang = currentLanguage() === 'zh' ? 'zh-CN' : 'en';
    document.getElementById('skip').textContent = t('skip');
    showStatus();
    showLink();
}

function showStatus() {
    const status = app.status;
    if (!status) {
        return;
    }
    for (const [name, field] of Object.entries(counted)) {
        const count = (status.Counts || {})[field] || 0;
        sideParts.counts[name].textContent = count > 0 ? number(count) : '';
        sideParts.counts[name].classList.toggle('alert', name === 'faults');
    }
    const fact = (name, value, hint) => [h('dt', {}, t(name)), h('dd', {title: hint || value}, value)];
    put(sideParts.facts,
        fact('address', (status.Url || location.origin).replace(/^http:\/\//, ''), status.Url),
        fact('user', status.User || t('none')), fact('data', status.Data || t('inMemory')),
        status.Now && fact('shownTime', wireTime(status.Now)));
}

let linked = true;
function showLink() {
    sideParts.state.textContent = linked ? '' : t('disconnected');
    document.body.classList.toggle('unlinked', !linked);
}

function setLinked(now) {
    if (linked !== now) {
        linked = now;
        showLink();
    }
}

let statusDue = null;
function refreshStatus() {
    if (statusDue) {
        return;
    }
    statusDue = setTimeout(async () => {
        statusDue = null;
        try {
            app.status = await api.get('/api/status');
            showStatus();
        } catch { /* the feed says when the server is away */ }
    }, 400);
}

function build() {
    buildSide();
    if (current && current.view.close) {
        current.view.close();
    }
    current = null;
    showRoute();
}

const pause = (milliseconds) => new Promise((done) => { setTimeout(done, milliseconds); });

async function begin() {
    app.status = await api.get('/api/status');
    showStatus();
    return Math.max(0, (app.status.Seq || 0) - 100);
}

async function follow() {
    let after = null;
    let wait = 500;
    let again = false; /* the server was away */
    for (;;) {
        try {
            const first = after === null;
            if (first) {
                app.events = [];
                after = await begin();
            }
            const answer = await api.get(`/api/feed?after=${after}&wait=${first ? 0 : 25}`);
            setLinked(true);
            wait = 500;
            after = answer.Seq;
            take(answer, first, again);
            again = false;
            await pause(300); /* many events a second are taken in one piece */
        } catch {
            setLinked(false);
            after = null; /* it may have been started anew, and count from 1 */
            again = true;
            await pause(wait);
            wait = Math.min(wait * 2, 5000);
        }
    }
}

function take(answer, first, again) {
    const events = answer.Events || [];
    if (events.length === 0 && !again) {
        return;
    }
    app.events = [...[...events].reverse(), ...app.events].slice(0, kept);
    if (!first) {
        refreshStatus();
    }
    try {
        tell(events, {first: first && !again, missed: again || (Boolean(answer.Missed) && !first)});
    } catch (error) {
        console.error(error); /* a fault of this page, not of the connection */
    }
}

function tell(events, how) {
    if (current.view.events) {
        current.view.events(events, how);
    }
}

document.getElementById('skip').addEventListener('click', (event) => {
    event.preventDefault();
    main.focus();
});
window.addEventListener('hashchange', showRoute);
document.addEventListener('keydown', (event) => {
    if (event.key === 'Escape' && !event.defaultPrevented && current && current.view.escape) {
        current.view.escape(event);
    }
});
setInterval(() => {
    if (current && current.view.tick) {
        current.view.tick();
    }
    refreshStatus();
}, 10000);

build();
follow();
