/* SPDX-License-Identifier: Apache-2.0 */
/* The devices and their state. */
import * as api from './api.js';
import {h, put, roving} from './dom.js';
import {button, empty, heading, place, tries} from './parts.js';
import {fullTime, number, relative, t} from './text.js';

const states = {online: 'online', offline: 'offline', gone: 'away'};

const fact = (name, value, hint) => h('div', {}, h('dt', {}, t(name)), h('dd', {title: hint || null}, value));
const when = (name, time, otherwise) => fact(name, time ? h('time', {'data-time': time}, relative(time)) : otherwise, time && fullTime(time));

export function devicesView(app) {
    const list = h('ul', {class: 'devices', 'aria-label': t('devices')});
    const notice = h('div', {class: 'news'});
    roving(list, 'button, a');
    let due = null;

    function card(device) {
        const path = `/api/devices/${encodeURIComponent(device.Device)}`;
        const expire = () => app.act(() => api.post(`${path}/expire`, {}), t('expired', device.Device)).then(reload);
        const forget = () => app.act(() => api.remove(path), t('forgotten', device.Device)).then(reload);
        const name = h('h2', {}, h('code', {}, device.Device));
        const known = device.State !== 'gone';
        return h('li', {class: 'card device', 'data-device': device.Device},
            h('div', {class: 'card-head'}, h('span', {class: `dot ${device.State}`}), name,
                h('span', {class: `state ${device.State}`}, t(states[device.State] || 'offline'))),
            h('dl', {class: 'grid-facts'},
                when('since', device.Since, t('never')), when('lastKeepalive', device.LastKeepalive, t('never')),
                when('lastSeen', device.LastSeen, t('never')), when('expires', device.Expires, t('neverExpires')),
                fact('address', h('code', {}, device.Address || '–')), fact('posts', number(device.Posts || 0))),
            h('div', {class: 'card-tools'},
                h('a', {class: 'button quiet', href: place('objects', null, {Device: device.Device})}, t('itsObjects')),
                h('a', {class: 'button quiet', href: place('exchanges', null, {Device: device.Device})}, t('itsExchanges')),
                h('span', {class: 'gap'}),
                known && device.State === 'online' ? button(t('expireNow'), expire, {hint: t('expireHint')}) : null,
                button(t('forget'), forget, {hint: t('forgetHint')})));
    }

    async function reload() {
        due = null;
        try {
            const {Devices} = await api.get('/api/devices');
            const focused = document.activeElement && list.contains(document.activeElement)
                ? [document.activeElement.closest('li').dataset.device, document.activeElement.textContent] : null;
            put(list, Devices.map(card));
            put(notice, Devices.length === 0 ? empty(app, t('devicesEmpty'), tries.register(app)) : null);
            if (focused) {
                const again = [...list.children].find((item) => item.dataset.device === focused[0]) || list.firstElementChild;
                const same = again && [...again.querySelectorAll('button, a')].find((item) => item.textContent === focused[1]);
                (same || (again && again.querySelector('button, a')) || document.getElementById('main')).focus();
            }
        } catch (error) {
            put(notice, h('p', {class: 'error'}, t('failed', error.message)));
        }
    }

    return {
        element: h('div', {class: 'view'}, heading(t('devices')), notice, list),
        show: reload,
        events() {
            due = due || setTimeout(reload, 500);
        },
        tick() {
            list.querySelectorAll('[data-time]').forEach((item) => { item.textContent = relative(Number(item.dataset.time)); });
        },
        close: () => clearTimeout(due),
    };
}
