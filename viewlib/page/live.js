/* SPDX-License-Identifier: Apache-2.0 */
/* The feed: what happens, the newest first. It can be paused, and shows what is asked for. */
import {pictureUrl} from './api.js';
import {announce, h, icon, put, roving} from './dom.js';
import {badge, button, empty, heading, statusPill, tries} from './parts.js';
import {bytes, clockTime, fullTime, kindName, number, t} from './text.js';

const most = 200;
const types = [['device', 'evDevice', 'devices'], ['object', 'evObject', 'objects'], ['exchange', 'evExchange', 'exchanges'],
    ['upload', 'evUpload', 'files'], ['fault', 'evFault', 'faults']];

const state = (name) => ({online: t('online'), offline: t('offline'), gone: t('away')}[name] || String(name));

const describe = {
    exchange: (event) => ({
        href: `#/exchanges/${event.Exchange}`,
        text: [h('code', {class: 'method'}, event.Method), ' ', h('code', {class: 'path'}, event.Path)],
        tail: [event.Fault ? badge(t('byFault', event.Fault), 'alert') : null, statusPill(event.Status)],
        below: [event.Device || event.Client, event.Reason].filter(Boolean).join(' · '),
    }),
    object: (event) => ({
        href: `#/objects/${event.Object}`,
        text: t('objectCame', kindName(event.Kind)),
        tail: [event.Notes ? badge(event.Notes === 1 ? t('oneNote') : t('notesCount', event.Notes), 'warn') : null,
            event.Picture ? h('img', {class: 'small', src: pictureUrl(event.Picture), alt: '', loading: 'lazy'}) : null],
        below: event.Id,
    }),
    device: (event) => ({
        href: '#/devices', text: t('deviceIs', state(event.State)), below: event.Device,
        tail: [h('span', {class: `dot ${event.State}`})],
    }),
    upload: (event) => ({href: '#/files', text: t('uploadGrew', event.Name, bytes(event.Length)), below: '', tail: []}),
    fault: (event) => ({href: '#/faults', text: t('faultSet', event.Fault), below: '', tail: []}),
};

function row(event) {
    const made = (describe[event.Type] || (() => ({href: '#/live', text: event.Type, tail: [], below: ''})))(event);
    const [, , image] = types.find(([type]) => type === event.Type) || [null, null, 'live'];
    return h('li', {}, h('a', {class: 'event', href: made.href, 'data-seq': event.Seq},
        h('span', {class: `event-icon of-${event.Type}`}, icon(image)),
        h('span', {class: 'event-text'}, h('span', {class: 'line'}, made.text), h('span', {class: 'below'}, made.below)),
        h('span', {class: 'tail'}, made.tail),
        h('time', {title: fullTime(event.Time)}, clockTime(event.Time))));
}

export function liveView(app) {
    const list = h('ol', {class: 'feed', 'aria-label': t('feed')});
    const keys = roving(list, 'a.event');
    const notice = h('div', {class: 'news'});
    const hidden = new Set();
    let waiting = 0;
    let paused = false;

    const pauseButton = button('', () => {
        paused = !paused;
        waiting = 0;
        if (!paused) {
            fill();
        }
        label();
    }, {kind: 'pause'});
    const label = () => {
        put(pauseButton, icon(paused ? 'play' : 'pause'), paused ? t('resume') : t('pause'),
            paused && waiting > 0 ? h('span', {class: 'count'}, t('waitingEvents', number(waiting))) : null);
        pauseButton.setAttribute('aria-pressed', String(paused));
    };
    const chips = types.map(([type, name]) => h('button', {
        type: 'button', class: 'chip', 'aria-pressed': 'true',
        onclick: (event) => {
            if (!hidden.delete(type)) {
                hidden.add(type);
            }
            event.currentTarget.setAttribute('aria-pressed', String(!hidden.has(type)));
            fill();
        },
    }, t(name)));

    function fill() {
        const events = app.events.filter((event) => !hidden.has(event.Type)).slice(0, most);
        put(list, events.map(row));
        put(notice, events.length === 0 ? empty(app, t('feedEmpty'), tries.device(app)) : null);
        keys.settle();
    }

    label();
    fill();
    return {
        element: h('div', {class: 'view'}, heading(t('live'), pauseButton),
            h('div', {class: 'chips', role: 'group', 'aria-label': t('showKinds')}, chips), notice, list),
        show() {},
        events(events, {first, missed}) {
            if (paused) {
                waiting += events.length;
                label();
                return;
            }
            if (first || missed) {
                fill();
                put(notice, missed ? h('p', {class: 'error'}, t('missed')) : [...notice.childNodes]);
                return;
            }
            const fresh = [...events].reverse().filter((event) => !hidden.has(event.Type));
            if (fresh.length > 0) {
                put(notice);
                list.prepend(...fresh.slice(0, most).map((event) => {
                    const made = row(event);
                    made.classList.add('fresh');
                    return made;
                }));
                while (list.children.length > most && !list.lastElementChild.contains(document.activeElement)) {
                    list.lastElementChild.remove();
                }
                keys.settle();
            }
            announce(t('newEvents', number(events.length)));
        },
    };
}
