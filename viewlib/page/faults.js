/* SPDX-License-Identifier: Apache-2.0 */
/* The faults panel: what the server is to do wrong, for which requests, and how often; and its clock. */
import * as api from './api.js';
import {h, put, roving} from './dom.js';
import {badge, button, deviceList, heading} from './parts.js';
import {currentLanguage, number, span, t, wireTime} from './text.js';

const resources = ['/VIID/*', '/VIID/System/*', '/VIID/System/Register', '/VIID/System/Keepalive', '/VIID/System/Time', '/VIID/System/UnRegister',
    ...['Images', 'Faces', 'Persons', 'MotorVehicles', 'NonMotorVehicles', 'Things', 'Scenes', 'VideoSlices', 'Files', 'IllegalRecords',
        'NonMotorIllegalRecords', 'GPSDatas', 'WifiDetector/WifiDatas', 'RFIDDatas', 'DispositionNotifications', 'AccessRecords', 'Upload/*']
        .map((name) => `/VIID/${name}`), '/log/event'];
const units = [['seconds', 1000], ['minutes', 60000], ['hours', 3600000], ['days', 86400000]];

/* The members of an own answer that are whole numbers. */
const numbers = [['DelayMs', 'delay'], ['DelayBeforeBodyMs', 'delayBody'], ['DelayBeforeReadingMs', 'delayRead'], ['BytesPerSecond', 'rate'],
    ['RequestBytesPerSecond', 'requestRate'], ['CutAfter', 'cutAfter']];
const switches = [['SkipAuth', 'skipAuth'], ['AfterAuth', 'afterAuth'], ['TakeEffect', 'takeEffect']];

/* Presets that belong together, by their names; what fits none of these stands at the end. */
const groups = [['ofSession', /^(stale-nonce|next-nonce|expired-|not-registered|keepalive-|fixed-|refuse-|redirect)/], ['ofChallenge', /^challenge-/],
    ['ofCodes', /^(code-\d|code-minus|unavailable)/], ['ofEnvelope', /^(envelope-|code-as|id-|text-|html-|empty-|failure-|ok-)/],
    ['ofForm', /^(media-|chunked|close-|gzip|extra-|garbage|trailing-)/], ['ofConnection', /^(delay|throttled-|stalled-|cut|reset|early-)/],
    ['ofTime', /^(time-|wrong-clock)/], ['ofRest', /^/]];

const presetTitle = (preset) => (currentLanguage() === 'zh' && preset.TitleZh) || preset.Title || preset.Name;

function field(label, input, kind = 'field') {
    return h('label', {class: kind}, h('span', {}, label), input);
}

const whole = (least, value = '') => h('input', {type: 'number', min: least, step: 1, value, inputmode: 'numeric'});
const select = (options, onchange = null) => h('select', {onchange}, options.map(([value, text]) => h('option', {value}, text)));

/* Inputs of an own answer, and what they say. */
function answerForm() {
    const status = h('input', {type: 'number', min: 100, max: 599, step: 1, inputmode: 'numeric', placeholder: t('statusHint'), value: '503', id: 'fault-status'});
    const body = h('textarea', {rows: 3, spellcheck: 'false', id: 'fault-body'});
    const type = h('input', {type: 'text', placeholder: 'application/VIID+JSON;charset=UTF-8', autocomplete: 'off', spellcheck: 'false'});
    const headers = h('textarea', {rows: 2, spellcheck: 'false', placeholder: 'Location: http://127.0.0.1:8081/'});
    const raw = h('textarea', {rows: 2, spellcheck: 'false'});
    const framing = select([['', t('usual')], ['length', t('framingLength')], ['chunked', t('framingChunked')], ['close', t('framingClose')]]);
    const cut = select([['', t('cutNone')], ['before-status', t('cutBefore')], ['mid-body', t('cutBody')], ['reset', t('cutReset')]]);
    const counts = numbers.map(([name, label]) => ({name, label, input: whole(0)}));
    const flags = switches.map(([name, label]) => ({name, label, input: h('input', {type: 'checkbox'})}));
    return {
        element: h('div', {class: 'own-answer'},
            h('div', {class: 'fields'}, field(t('status'), status), field(t('contentType'), type)),
            field(t('body'), body),
            h('details', {}, h('summary', {}, t('moreFields')),
                h('div', {class: 'fields'}, counts.map(({label, input}) => field(t(label), input)), field(t('framing'), framing), field(t('cutWhere'), cut)),
                field(t('answerHeaders'), headers), field(t('rawBytes'), raw),
                h('div', {class: 'checks'}, flags.map(({label, input}) => h('label', {class: 'check'}, input, t(label)))))),
        read() {
            const answer = {};
            const set = (name, input, convert = (text) => text) => {
                if (input.value !== '') {
                    answer[name] = convert(input.value);
                }
            };
            set('Status', status, Number);
            set('Body', body);
            set('ContentType', type);
            set('Framing', framing);
            set('Cut', cut);
            set('Raw', raw, (text) => text.replace(/\r?\n/g, '\r\n'));
            counts.forEach(({name, input}) => set(name, input, Number));
            flags.filter(({input}) => input.checked).forEach(({name}) => { answer[name] = true; });
            const lines = headers.value.split('\n').map((line) => line.trim()).filter(Boolean);
            if (lines.length > 0) {
                answer.Headers = lines.map((line) => {
                    const colon = line.indexOf(':');
                    if (colon < 1) {
                        throw new Error(t('wrongHeader', line));
                    }
                    return [line.slice(0, colon).trim(), line.slice(colon + 1).trim()];
                });
            }
            return answer;
        },
    };
}

function form(app, presets, done) {
    const device = h('input', {type: 'text', list: 'known-devices', placeholder: t('allDevices'), autocomplete: 'off', spellcheck: 'false', id: 'fault-device'});
    const resource = h('input', {type: 'text', list: 'resources', value: '/VIID/*', autocomplete: 'off', spellcheck: 'false', required: true, id: 'fault-resource'});
    const method = select([['*', t('everyMethod')], ...['POST', 'GET', 'PUT', 'DELETE'].map((name) => [name, name])]);
    const own = answerForm();
    const count = whole(1, '1');
    const share = h('input', {type: 'number', min: 1, max: 100, step: 'any', value: '25', inputmode: 'decimal'});
    const error = h('p', {class: 'error', role: 'alert', hidden: true});
    const choice = (group, value, checked, ...label) => h('label', {class: 'radio'}, h('input', {
        type: 'radio', name: group, value, checked, onchange: () => adjust(),
    }), label);
    const ask = (group) => element.querySelector(`input[name="${group}"]:checked`).value;
    const groupOf = ({Name}) => groups.find(([, names]) => names.test(Name))[0];
    const preset = h('select', {onchange: () => takePreset()}, groups.map(([group]) => [group, presets.filter((each) => groupOf(each) === group)])
        .filter(([, members]) => members.length > 0).map(([group, members]) => h('optgroup', {label: t(group)},
            members.map((each) => h('option', {value: each.Name}, presetTitle(each))))));
    preset.id = 'fault-preset';
    const about = h('p', {class: 'muted about'});

    /* A preset may know the resource that it makes sense for. */
    const takePreset = () => {
        const chosen = presets.find(({Name}) => Name === preset.value);
        const rule = (chosen && chosen.Rule) || {};
        put(about, chosen ? [h('code', {}, chosen.Name), ' ', rule.Answer ? h('code', {class: 'muted'}, JSON.stringify(rule.Answer)) : null] : null);
        if (rule.Resource) {
            resource.value = rule.Resource;
        }
        method.value = rule.Method || '*';
        count.value = rule.Count || 1;
        element.querySelector(`input[name="often"][value="${rule.Count ? 'count' : 'always'}"]`).checked = true;
        adjust();
    };
    const adjust = () => {
        const presetChosen = ask('what') === 'preset';
        element.querySelector('.preset-part').hidden = !presetChosen;
        own.element.hidden = presetChosen;
        count.disabled = ask('often') !== 'count';
        share.disabled = ask('often') !== 'share';
    };
    const read = () => {
        const rule = {Device: device.value.trim() || '*', Resource: resource.value.trim(), Method: method.value};
        if (ask('often') === 'count') {
            rule.Count = Number(count.value);
        } else if (ask('often') === 'share') {
            rule.Share = Number(share.value) / 100;
        }
        return ask('what') === 'preset' ? {...rule, Preset: preset.value} : {...rule, Answer: own.read()};
    };
    const submit = async (event) => {
        event.preventDefault();
        error.hidden = true;
        try {
            const {Fault} = await api.post('/api/faults', read());
            app.say(t('set1', Fault));
            done();
        } catch (problem) {
            error.textContent = t('failed', problem.message);
            error.hidden = false;
        }
    };
    const element = h('form', {class: 'card fault-form', onsubmit: submit, 'aria-label': t('newFault')},
        h('h2', {}, t('newFault')),
        h('div', {class: 'fields'}, field(t('resource'), resource), field(t('method'), method), field(t('device'), device)),
        h('fieldset', {}, h('legend', {}, t('what')),
            h('div', {class: 'choices'}, choice('what', 'preset', true, t('aPreset')), choice('what', 'own', false, t('ownAnswer'))),
            h('div', {class: 'preset-part'}, preset, about), own.element),
        h('fieldset', {}, h('legend', {}, t('often')), h('div', {class: 'choices'},
            h('span', {class: 'choice'}, choice('often', 'count', true, t('nextOnes')), count, t('requests')),
            h('span', {class: 'choice'}, choice('often', 'share', false, t('share')), share, t('percent')),
            h('span', {class: 'choice'}, choice('often', 'always', false, t('untilRemoved'))))),
        error, h('div', {class: 'card-tools'}, h('button', {type: 'submit', class: 'primary'}, t('set'))),
        h('datalist', {id: 'resources'}, resources.map((value) => h('option', {value}))));
    count.setAttribute('aria-label', t('requests'));
    share.setAttribute('aria-label', `${t('share')} ${t('percent')}`);
    preset.setAttribute('aria-label', t('aPreset'));
    takePreset();
    return element;
}

function whatOf(rule, presets) {
    if (rule.Preset) {
        const preset = presets.find(({Name}) => Name === rule.Preset);
        return preset ? presetTitle(preset) : rule.Preset;
    }
    return rule.Answer && rule.Answer.Status ? t('answerKind', rule.Answer.Status) : t('shapedAnswer');
}

function oftenOf(rule) {
    if (rule.Count) {
        return t('nextN', number(rule.Count));
    }
    return rule.Share ? t('shareN', number(Math.round(rule.Share * 1000) / 10)) : t('untilRemoved');
}

function clockForm(app) {
    const amount = h('input', {type: 'number', step: 'any', value: '0', inputmode: 'decimal', 'aria-label': t('offset'), id: 'clock-offset'});
    const unit = select(units.map(([name, length]) => [length, t(name)]));
    unit.setAttribute('aria-label', t('offset'));
    const shown = h('p', {class: 'muted'});
    const draw = (milliseconds, now) => put(shown, milliseconds === 0 ? t('clockRight')
        : t('clockSet', `${milliseconds < 0 ? '−' : '+'}${span(milliseconds)}`), now ? ` · ${t('shownTime')} ${wireTime(now)}` : '');
    const refresh = async (fill) => {
        const status = await api.get('/api/status');
        draw(status.ClockOffsetMs || 0, status.Now);
        if (fill) {
            const [, length] = [...units].reverse().find(([, each]) => status.ClockOffsetMs && status.ClockOffsetMs % each === 0) || units[2];
            unit.value = String(length);
            amount.value = String((status.ClockOffsetMs || 0) / length);
        }
    };
    const apply = (milliseconds) => app.act(() => api.put('/api/clock', {OffsetMs: Math.round(milliseconds)}), milliseconds === 0 ? t('clockRight')
        : t('clockSet', `${milliseconds < 0 ? '−' : '+'}${span(milliseconds)}`)).then(() => refresh(true)).catch(() => {});
    refresh(true).catch(() => {});
    return {
        refresh,
        element: h('form', {class: 'card clock-form', 'aria-label': t('clock'), onsubmit: (event) => {
            event.preventDefault();
            apply(Number(amount.value) * Number(unit.value));
        }}, h('h2', {}, t('clock')), h('p', {class: 'muted'}, t('clockHint')), h('div', {class: 'choices'}, amount, unit,
            h('button', {type: 'submit'}, t('apply')), button(t('right'), () => apply(0), {kind: 'quiet'})), shown),
    };
}

export function faultsView(app) {
    const list = h('ul', {class: 'rows', 'aria-label': t('activeFaults')});
    const notice = h('div', {class: 'news'});
    const keys = roving(list, 'button');
    const place = h('div', {class: 'form-place'});
    const clock = clockForm(app);
    let presets = [];
    let due = null;

    const row = (rule) => h('li', {class: `row fault${rule.Left === 0 ? ' spent' : ''}`, 'data-fault': rule.Fault},
        h('span', {class: 'main'}, h('span', {class: 'line'}, badge(String(rule.Fault)), h('strong', {}, whatOf(rule, presets))),
            h('span', {class: 'below'}, h('code', {}, `${rule.Method === '*' ? '' : rule.Method + ' '}${rule.Resource}`), ' · ',
                rule.Device === '*' ? t('allDevices') : h('code', {}, rule.Device), ' · ', oftenOf(rule))),
        h('span', {class: 'tail'}, h('span', {class: 'hits'}, rule.Hits === 1 ? t('oneHit') : t('hitsOf', number(rule.Hits || 0))),
            rule.Left === null || rule.Left === undefined ? null : h('span', {class: 'muted'}, rule.Left === 0 ? t('usedUp') : t('leftOf', number(rule.Left)))),
        button(t('remove'), () => app.act(() => api.remove(`/api/faults/${rule.Fault}`), t('removed', rule.Fault)).then(reload), {name: 'bin', kind: 'quiet'}));
    const removeAll = button(t('removeAll'), () => app.act(() => api.remove('/api/faults'), t('removedAll')).then(reload));

    async function reload() {
        due = null;
        try {
            const {Faults} = await api.get('/api/faults');
            const focused = list.contains(document.activeElement) ? document.activeElement.closest('li').dataset.fault : null;
            put(list, [...Faults].reverse().map(row));
            put(notice, Faults.length === 0 ? h('div', {class: 'empty'}, h('p', {}, t('faultsEmpty'))) : null);
            removeAll.hidden = Faults.length === 0;
            keys.settle();
            if (focused) {
                (list.querySelector(`[data-fault="${focused}"] button`) || list.querySelector('button') || document.getElementById('main')).focus();
            }
        } catch (error) {
            put(notice, h('p', {class: 'error'}, t('failed', error.message)));
        }
    }

    (async () => {
        try {
            presets = (await api.get('/api/presets')).Presets;
        } catch (error) {
            app.say(t('failed', error.message), true);
        }
        put(place, form(app, presets, reload));
        reload();
    })();
    return {
        element: h('div', {class: 'view'}, heading(t('faults')), h('div', {class: 'columns'},
            h('div', {}, place), h('div', {}, h('section', {class: 'active-faults'}, h('div', {class: 'sub-heading'}, h('h2', {}, t('activeFaults')), removeAll),
                notice, list), clock.element)), deviceList()),
        show() {},
        events(events, {missed}) {
            if (missed || events.some((event) => event.Type === 'fault' || (event.Type === 'exchange' && event.Fault))) {
                due = due || setTimeout(reload, 500);
            }
        },
        tick: () => clock.refresh(false).catch(() => {}),
        close: () => clearTimeout(due),
    };
}
