/* SPDX-License-Identifier: Apache-2.0 */
/* What the page says, in English and Chinese, and how it writes times and sizes. */

export const strings = {
    en: {
        skip: 'Skip to the content', tagline: 'development view library', otherLanguage: '中文',
        live: 'Live', devices: 'Devices', objects: 'Objects', files: 'Files', exchanges: 'Exchanges', faults: 'Faults',
        navigation: 'Views', address: 'Address', user: 'User', data: 'Data', inMemory: 'in memory', shownTime: 'Shown time',
        disconnected: 'The server cannot be reached. Trying again…',
        failed: 'That did not work: {0}', more: 'Show more', total: '{0} in all', shown: '{0} of {1}',
        newer: 'Newer', older: 'Older', close: 'Close', arrived: '{0} new – show', filter: 'Filter', clear: 'Clear filter',
        none: 'none', never: 'never', copy: 'Copy', copied: 'Copied', details: 'Details',
        tryThis: 'Try this', nothingFits: 'Nothing fits the filter.', device: 'Device', kind: 'Kind', time: 'Time',
        noDevice: 'no device', path: 'Path', gone: 'This is not there (any more).',

        pause: 'Pause', resume: 'Go on', waitingEvents: '{0} waiting', feed: 'What happens', missed: 'Some events were missed.',
        feedEmpty: 'Nothing has happened yet. As soon as a device talks to this server, it shows here.',
        newEvents: '{0} new events', showKinds: 'Show', evDevice: 'Devices', evObject: 'Objects', evExchange: 'Exchanges',
        evUpload: 'Uploads', evFault: 'Faults', deviceIs: 'Device is {0}', uploadGrew: 'Upload {0} holds {1}',
        faultSet: 'Fault {0} changed', objectCame: '{0} stored',

        online: 'online', offline: 'offline', away: 'signed off', since: 'Since',
        lastKeepalive: 'Last keepalive', lastSeen: 'Last seen', posts: 'Posts', expires: 'Expires', expireNow: 'Expire now',
        forget: 'Forget', devicesEmpty: 'No device has registered yet.', neverExpires: 'never',
        expireHint: 'The registration ends now: the next request gets 401.', forgetHint: 'The registration is removed.',
        expired: '{0}: the registration has ended', forgotten: '{0} is forgotten', itsObjects: 'Its objects',
        itsExchanges: 'Its exchanges', ago: '{0} ago', inTime: 'in {0}',

        anyKind: 'Every kind', identifier: 'Identifier', withNotes: 'With notes only', objectsEmpty: 'Nothing has been stored yet.',
        notes: 'Notes', notesCount: '{0} notes', oneNote: '1 note', members: 'Members', pictures: 'Pictures',
        noPicture: 'No picture came with this object.', noScene: 'The picture that the box lies in is not stored.', received: 'Received',
        showExchange: 'The exchange it came in', box: 'Box', conform: 'Nothing to note: it conforms.',
        outside: 'reaches out of the picture', member: 'Member', value: 'Value', noMembers: 'It has no members: it came as bare data.',
        pictureAlt: 'Picture of {0} {1}', sceneAlt: 'Scene of {0}, {1} objects marked', size: 'Size',

        slices: 'Video slices', fileObjects: 'Files', uploads: 'Uploads', uploadsEmpty: 'Nothing has been uploaded yet.',
        slicesEmpty: 'No video slice has been stored yet.', filesEmpty: 'No file has been stored yet.',
        hash: 'MD5',

        method: 'Method', status: 'Status', text: 'Text', anyMethod: 'every', anyStatus: 'every', pathHint: '/VIID/Faces or /VIID/*',
        textHint: 'in headers or bodies', exchangesEmpty: 'No request has come yet.', exportHar: 'HAR', exportLines: 'JSON lines',
        exportHint: 'Download what fits the filter', request: 'Request', answer: 'Answer', headers: 'Headers', body: 'Body',
        timing: 'Timing', noBody: 'No body.', cut: 'Only the beginning is kept.', binary: '{0} of binary data', client: 'Client',
        noAnswer: 'no answer', incomplete: 'broken off', byFault: 'by fault {0}', reason: 'Reason', statusCode: 'Status code',
        shorten: 'Shorten long values', whole: 'Show whole values', characters: '{0} characters', exchange: 'Exchange {0}',
        asCurl: 'Copy as curl',

        ofSession: 'Session', ofChallenge: 'Challenge', ofCodes: 'Status codes', ofEnvelope: 'Bodies and envelopes', ofForm: 'Headers and framing',
        ofConnection: 'Delay and connection', ofTime: 'Time', ofRest: 'Others',
        newFault: 'New fault', resource: 'Resource', allDevices: 'every device', everyMethod: 'every method', often: 'How often',
        nextOnes: 'the next', requests: 'requests', share: 'a share of', percent: '%', untilRemoved: 'until removed', what: 'What happens',
        aPreset: 'Preset', ownAnswer: 'Own answer', set: 'Set fault', set1: 'Fault {0} is set', activeFaults: 'Faults that are set',
        faultsEmpty: 'No fault is set: every request is answered as usual.', remove: 'Remove',
        removeAll: 'Remove all', removed: 'Fault {0} is removed', removedAll: 'All faults are removed', clock: 'Clock',
        clockHint: 'How far the clock that devices are shown is off.', apply: 'Apply', offset: 'Offset', seconds: 's', minutes: 'min',
        hours: 'h', days: 'd', right: 'Right', clockSet: 'The clock is off by {0}', clockRight: 'The clock is right',
        hitsOf: '{0} hits', oneHit: '1 hit', leftOf: '{0} left', usedUp: 'used up', nextN: 'the next {0}', shareN: '{0} % of them',
        contentType: 'Content type', delay: 'Delay (ms)', delayBody: 'Delay before the body (ms)', delayRead: 'Delay before reading (ms)',
        rate: 'Bytes per second', requestRate: 'Reading, bytes per second', framing: 'Framing', cutWhere: 'Connection',
        cutAfter: 'Cut after bytes', rawBytes: 'Raw bytes instead of an answer', skipAuth: 'Ask for no credentials',
        afterAuth: 'Only after the credentials', takeEffect: 'Store it all the same', answerHeaders: 'Headers, one a line',
        usual: 'as usual', framingLength: 'with its length', framingChunked: 'in chunks', framingClose: 'until the connection ends',
        cutNone: 'stays', cutBefore: 'closed before the status', cutBody: 'closed within the body', cutReset: 'reset',
        answerKind: 'Answer {0}', shapedAnswer: 'Usual answer, changed', moreFields: 'Delays, throttle, cut and more', wrongHeader: 'A header needs a colon: "{0}"',
        statusHint: 'empty: the usual one',
    },
    zh: {
        skip: '跳到内容', tagline: '开发用视图库', otherLanguage: 'English',
        live: '实时', devices: '设备', objects: '对象', files: '文件', exchanges: '报文', faults: '故障',
        navigation: '视图', address: '地址', user: '用户', data: '数据', inMemory: '仅在内存中', shownTime: '对外时间',
        disconnected: '无法连接服务器，正在重试…',
        failed: '操作失败：{0}', more: '显示更多', total: '共 {0} 条', shown: '{0} / {1}',
        newer: '较新', older: '较早', close: '关闭', arrived: '{0} 条新记录 – 显示', filter: '筛选', clear: '清除筛选',
        none: '无', never: '从未', copy: '复制', copied: '已复制', details: '详情',
        tryThis: '试一试', nothingFits: '没有符合筛选条件的记录。', device: '设备', kind: '类型', time: '时间',
        noDevice: '无设备', path: '路径', gone: '该记录不存在（或已删除）。',

        pause: '暂停', resume: '继续', waitingEvents: '{0} 条等待', feed: '正在发生', missed: '部分事件已错过。',
        feedEmpty: '还没有任何事件。设备一与本服务器通信，这里就会显示。',
        newEvents: '{0} 条新事件', showKinds: '显示', evDevice: '设备', evObject: '对象', evExchange: '报文',
        evUpload: '上传', evFault: '故障', deviceIs: '设备{0}', uploadGrew: '上传 {0} 已有 {1}',
        faultSet: '故障 {0} 有变化', objectCame: '已存储 {0}',

        online: '在线', offline: '离线', away: '已注销', since: '注册时间',
        lastKeepalive: '最近保活', lastSeen: '最近活动', posts: '提交', expires: '到期', expireNow: '立即过期',
        forget: '忘记', devicesEmpty: '还没有设备注册。', neverExpires: '不过期',
        expireHint: '注册立即失效：下一个请求得到 401。', forgetHint: '删除该注册。',
        expired: '{0}：注册已失效', forgotten: '已忘记 {0}', itsObjects: '它的对象',
        itsExchanges: '它的报文', ago: '{0}前', inTime: '{0}后',

        anyKind: '所有类型', identifier: '标识', withNotes: '仅有提示的', objectsEmpty: '还没有存储任何对象。',
        notes: '提示', notesCount: '{0} 条提示', oneNote: '1 条提示', members: '成员', pictures: '图片',
        noPicture: '该对象没有图片。', noScene: '没有存储该框所在的图片。', received: '接收时间',
        showExchange: '所在的报文', box: '框', conform: '没有提示：符合规范。',
        outside: '超出图片范围', member: '成员', value: '值', noMembers: '没有成员：以纯数据提交。',
        pictureAlt: '{0} {1} 的图片', sceneAlt: '{0} 的场景图，标出 {1} 个对象', size: '大小',

        slices: '视频片段', fileObjects: '文件', uploads: '上传', uploadsEmpty: '还没有上传。',
        slicesEmpty: '还没有存储视频片段。', filesEmpty: '还没有存储文件。',
        hash: 'MD5',

        method: '方法', status: '状态', text: '文本', anyMethod: '全部', anyStatus: '全部', pathHint: '/VIID/Faces 或 /VIID/*',
        textHint: '在头或正文中', exchangesEmpty: '还没有收到请求。', exportHar: 'HAR', exportLines: 'JSON 行',
        exportHint: '下载符合筛选条件的报文', request: '请求', answer: '应答', headers: '头', body: '正文',
        timing: '耗时', noBody: '没有正文。', cut: '仅保留开头部分。', binary: '{0} 二进制数据', client: '客户端',
        noAnswer: '无应答', incomplete: '中断', byFault: '故障 {0}', reason: '原因', statusCode: '状态码',
        shorten: '缩短长值', whole: '显示完整值', characters: '{0} 个字符', exchange: '报文 {0}',
        asCurl: '复制为 curl',

        ofSession: '会话', ofChallenge: '质询', ofCodes: '状态码', ofEnvelope: '正文与信封', ofForm: '头与分帧', ofConnection: '延迟与连接',
        ofTime: '时间', ofRest: '其他',
        newFault: '新建故障', resource: '资源', allDevices: '所有设备', everyMethod: '所有方法', often: '次数',
        nextOnes: '接下来', requests: '个请求', share: '按比例', percent: '%', untilRemoved: '直到移除', what: '内容',
        aPreset: '预设', ownAnswer: '自定义应答', set: '设置故障', set1: '故障 {0} 已设置', activeFaults: '已设置的故障',
        faultsEmpty: '没有设置故障：所有请求正常应答。', remove: '移除',
        removeAll: '全部移除', removed: '故障 {0} 已移除', removedAll: '已移除所有故障', clock: '时钟',
        clockHint: '向设备显示的时钟的偏差。', apply: '应用', offset: '偏差', seconds: '秒', minutes: '分',
        hours: '小时', days: '天', right: '准确', clockSet: '时钟偏差 {0}', clockRight: '时钟准确',
        hitsOf: '命中 {0} 次', oneHit: '命中 1 次', leftOf: '剩余 {0} 次', usedUp: '已用完', nextN: '接下来 {0} 个', shareN: '其中 {0} %',
        contentType: '媒体类型', delay: '延迟（毫秒）', delayBody: '正文前延迟（毫秒）', delayRead: '读取前延迟（毫秒）',
        rate: '每秒字节数', requestRate: '每秒读取字节数', framing: '分帧', cutWhere: '连接',
        cutAfter: '多少字节后断开', rawBytes: '代替应答的原始字节', skipAuth: '不要求认证',
        afterAuth: '仅在认证之后', takeEffect: '仍然存储', answerHeaders: '头，每行一个',
        usual: '照常', framingLength: '带长度', framingChunked: '分块', framingClose: '以连接关闭结束',
        cutNone: '保持', cutBefore: '在状态行之前关闭', cutBody: '在正文中关闭', cutReset: '重置',
        answerKind: '应答 {0}', shapedAnswer: '照常应答，有改动', moreFields: '延迟、限速、断开等', wrongHeader: '头需要冒号："{0}"',
        statusHint: '留空：照常',
    },
};

const kinds = {
    Image: '图像', Face: '人脸', Person: '人员', MotorVehicle: '机动车', NonMotorVehicle: '非机动车', Thing: '物品', Scene: '场景',
    VideoSlice: '视频片段', File: '文件', ImageData: '图像数据', VideoSliceData: '视频片段数据', FileData: '文件数据',
    IllegalRecord: '违法记录', NonMotorIllegalRecord: '非机动车违法', GPSData: '定位', WifiData: '无线探测', WifiUser: '无线用户',
    Imei: 'IMEI', RFIDData: '射频', RFIDInfo: '射频标签', DispositionNotification: '布控告警', AccessRecord: '门禁记录', LogEvent: '日志',
};

/* What the values of some members mean: English, Chinese. */
const meanings = {
    InfoKind: {0: ['other', '其他'], 1: ['automatic', '自动采集'], 2: ['manual', '人工采集']},
    Type: {
        '01': ['vehicle', '车辆大图'], '02': ['plate', '车牌'], '09': ['vehicle close-up', '车辆特写'], '10': ['person', '人员'],
        '11': ['face', '人脸'], '12': ['non-motor vehicle', '非机动车'], '13': ['thing', '物品'], '14': ['scene', '场景'],
        100: ['general', '一般图片'],
    },
    PlateColor: {
        1: ['black', '黑'], 2: ['white', '白'], 3: ['grey', '灰'], 4: ['red', '红'], 5: ['blue', '蓝'], 6: ['yellow', '黄'],
        7: ['orange', '橙'], 8: ['brown', '棕'], 9: ['green', '绿'], 10: ['purple', '紫'], 11: ['cyan', '青'], 12: ['pink', '粉'],
        99: ['other', '其他'],
    },
    StatusCode: {
        0: ['OK', '正常'], 1: ['other fault', '其他错误'], 2: ['busy', '设备忙'], 3: ['device fault', '设备错误'],
        4: ['invalid operation', '无效操作'], 5: ['XML format', 'XML 格式'], 6: ['XML content', 'XML 内容'],
        7: ['JSON format', 'JSON 格式'], 8: ['JSON content', 'JSON 内容'], 9: ['restarting', '重启中'],
    },
};

const stored = () => {
    try {
        return localStorage.getItem('language');
    } catch {
        return null;
    }
};

let language = ['en', 'zh'].includes(stored()) ? stored() : /^zh\b/i.test(navigator.language || '') ? 'zh' : 'en';

export const currentLanguage = () => language;

export function setLanguage(name) {
    language = name;
    try {
        localStorage.setItem('language', name);
    } catch { /* it holds until the page is closed */ }
}

export function t(key, ...values) {
    const text = strings[language][key];
    return values.reduce((result, value, index) => result.replace(`{${index}}`, () => value), text);
}

export const kindName = (kind) => (language === 'zh' && Object.hasOwn(kinds, kind) ? kinds[kind] : kind);
export const kindNames = Object.keys(kinds);

export function meaning(member, value) {
    const table = Object.hasOwn(meanings, member) ? meanings[member] : {};
    const found = Object.hasOwn(table, String(value)) ? table[String(value)] : null;
    return found && found[language === 'zh' ? 1 : 0];
}

const locale = () => (language === 'zh' ? 'zh-CN' : 'en-GB');

export function number(value) {
    return new Intl.NumberFormat(locale()).format(value);
}

export function bytes(count) {
    const units = ['B', 'KB', 'MB', 'GB', 'TB'];
    let power = 0;
    let rest = Number(count) || 0;
    while (rest >= 1000 && power < units.length - 1) {
        rest /= 1000;
        ++power;
    }
    return `${new Intl.NumberFormat(locale(), {maximumFractionDigits: rest < 10 && power > 0 ? 1 : 0}).format(rest)} ${units[power]}`;
}

const two = (value) => String(value).padStart(2, '0');

/* Times of a day alone for today's, with the date for others. */
export function clockTime(milliseconds) {
    const date = new Date(milliseconds);
    const time = `${two(date.getHours())}:${two(date.getMinutes())}:${two(date.getSeconds())}`;
    const today = new Date().toDateString() === date.toDateString();
    return today ? time : `${date.getFullYear()}-${two(date.getMonth() + 1)}-${two(date.getDate())} ${time}`;
}

export function fullTime(milliseconds) {
    const date = new Date(milliseconds);
    return `${date.getFullYear()}-${two(date.getMonth() + 1)}-${two(date.getDate())} ${two(date.getHours())}:` +
        `${two(date.getMinutes())}:${two(date.getSeconds())}.${String(date.getMilliseconds()).padStart(3, '0')}`;
}

/* "YYYYMMDDhhmmss" as it is on the wire, for reading. */
export function wireTime(text) {
    const parts = /^(\d{4})(\d\d)(\d\d)(\d\d)(\d\d)(\d\d)$/.exec(text);
    return parts ? `${parts[1]}-${parts[2]}-${parts[3]} ${parts[4]}:${parts[5]}:${parts[6]}` : String(text);
}

export function span(milliseconds) {
    const seconds = Math.round(Math.abs(milliseconds) / 1000);
    const unit = (value, name) => `${value} ${t(name)}`;
    if (seconds < 60) {
        return unit(seconds, 'seconds');
    }
    if (seconds < 3600) {
        return unit(Math.floor(seconds / 60), 'minutes');
    }
    return seconds < 86400 ? unit(Math.floor(seconds / 3600), 'hours') : unit(Math.floor(seconds / 86400), 'days');
}

export function relative(milliseconds) {
    const difference = Date.now() - milliseconds;
    return difference >= -500 ? t('ago', span(difference)) : t('inTime', span(difference));
}
