// The people of the household and their days, as a client of the official SDK asks for them:
// list_persons, get_overview, get_day and compare_periods.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import {
  answer,
  chinese,
  connect,
  environment,
  household,
  membersOf,
  numberIn,
} from './support.mjs';

const languages = [
  {
    name: 'English',
    env: environment(),
    person: /^· (.+) \(person=(.+)\): ([\d,]+) records, (\S*) ~ (\S*)(?:, last synced (.+))?$/,
    severalPersons: /^🔴 Multiple members: /,
    titles: ['[Data coverage]', '[Data]'],
    cards: ['Overview', 'Activity', 'Heart rate', 'Sleep', 'Workouts', 'Body'],
    records: /^ {4}Records: ([\d,]+)$/m,
    range: /^ {4}Date range: (\S+) ~ (\S+)$/m,
    emptyRange: 'Range:none',
    warning: /^Note: do not infer anything about health from a missing item/m,
    stepsOfDay: /^ {2}StepCount: ([\d,]+) count \((\d+) samples\)$/m,
    dayWithoutRecords: 'Nothing recorded on this day.',
    trendMean: /^Days with data: (\d+), mean ([\d.,]+),/m,
    periodMean: /^([AB]) {2}(\S+) ~ (\S+):mean ([\d.,]+) over (\d+) days$/,
    noPeriod: /:no data \(not zero\)$/,
    difference: /^A - B = (-?[\d.,]+) \(([+-][\d.]+)%\)$/m,
  },
  {
    name: 'Chinese',
    env: chinese,
    person: /^· (.+) \(person=(.+)\):([\d,]+) 条记录,(\S*) ~ ([-\d]*)(?:,最近同步 (.+))?$/,
    severalPersons: /^🔴 有多个成员:/,
    titles: ['【数据覆盖说明】', '【数据】'],
    cards: ['数据总览', '活动', '心率', '睡眠', '训练', '身体数据'],
    records: /^ {4}记录数: ([\d,]+)$/m,
    range: /^ {4}时间跨度: (\S+) ~ (\S+)$/m,
    emptyRange: '覆盖区间:无',
    warning: /^提示:请勿因某项缺失而推断健康状况,缺失仅代表未采集。$/m,
    stepsOfDay: /^ {2}StepCount: ([\d,]+) count\((\d+) 个样本\)$/m,
    dayWithoutRecords: '这一天没有任何记录。',
    trendMean: /^有数据的天数:(\d+),日均 ([\d.,]+),/m,
    periodMean: /^([AB]) {2}(\S+) ~ (\S+):日均 ([\d.,]+)\((\d+) 天\)$/,
    noPeriod: /:没有数据\(不代表 0\)$/,
    difference: /^A - B = (-?[\d.,]+)\(([+-][\d.]+)%\)$/m,
  },
];

const day = '2024-03-13';
const march = { from: '2024-03-01', to: '2024-03-31' };
const winter = { from: '2024-01-01', to: '2024-02-29' };

/** The groups of `pattern` in `text`. Fails when there is no match. */
function found(text, pattern) {
  const match = pattern.exec(text);
  assert.ok(match, `no ${pattern} in:\n${text}`);
  return match.slice(1);
}

for (const words of languages) {
  test(`list_persons counts what is stored, in ${words.name}`, async (t) => {
    const { client } = await connect(t, household(), { env: words.env });

    const lines = (await answer(client, 'list_persons')).split('\n');

    const members = membersOf(household());
    assert.deepEqual(
      lines.slice(0, 3).map((line) => found(line, words.person).slice(0, 3)),
      members.map(({ name, id, records }) => [name, id, records.toLocaleString('en-US')]),
    );
    const [, , , first, last, synced] = found(lines[0], words.person);
    assert.match(first, /^2023-\d\d-\d\d$/);
    assert.equal(last, '2024-03-31');
    assert.match(synced, /^2024-03-3\d \d\d:\d\d$/);
    assert.equal(lines[3], '');
    assert.match(lines[4], words.severalPersons);
    assert.equal(lines.length, 5);
  });

  test(`get_overview shows six cards of what list_persons counts, in ${words.name}`, async (t) => {
    const { client } = await connect(t, household(), { env: words.env });
    const persons = (await answer(client, 'list_persons')).split('\n');

    for (const index of [0, 1]) {
      const [name, id, records, first, last] = found(persons[index], words.person);
      const text = await answer(client, 'get_overview', { person: name });

      assert.equal(text, await answer(client, 'get_overview', { person: id }));
      assert.deepEqual(found(text, words.records), [records]);
      assert.deepEqual(found(text, words.range), [first, last]);
      const lines = text.split('\n');
      const cards = lines.filter((line) => line.startsWith('· ')).slice(0, 6);
      assert.deepEqual(
        cards,
        words.cards.map((card) => `· ${card}`),
      );
      assert.deepEqual(
        lines.filter((line) => words.titles.includes(line)),
        words.titles,
      );
      assert.match(text, words.warning);
    }
  });

  test(`get_overview of someone without records has no figure, in ${words.name}`, async (t) => {
    const { client } = await connect(t, household(), { env: words.env });

    const text = await answer(client, 'get_overview', { person: '小美' });

    assert.equal(text.split('\n')[1], words.emptyRange);
    assert.match(text, words.warning);
    // The windows in the labels, 30 and 90 days, are the only numbers.
    assert.doesNotMatch(text.replace(/\b[39]0\b/g, ''), /\d/);
  });

  test(`get_day agrees with get_trend and with the workouts, in ${words.name}`, async (t) => {
    const { client } = await connect(t, household(), { env: words.env });
    const person = 'ann-01';
    const steps = { person, metric: 'steps', from: day, to: day };
    const trend = await answer(client, 'get_trend', steps);
    const list = { person, ...march, format: 'json' };
    const [newest] = JSON.parse(await answer(client, 'get_workouts', list)).workouts;

    const text = await answer(client, 'get_day', { person, date: day });
    const trained = await answer(client, 'get_day', { person, date: newest.start.slice(0, 10) });

    const [value, samples] = found(text, words.stepsOfDay);
    assert.ok(trend.includes(`\n${day}  ${value}\n`), `${value} steps in:\n${trend}`);
    assert.ok(numberIn(value) > 0 && Number(samples) > 0);
    const minutes = Number(newest.duration_min.toPrecision(4));
    assert.ok(trained.includes(`\n  ${newest.label} ${minutes} min`), trained);
  });

  test(`get_day says when nothing is recorded, in ${words.name}`, async (t) => {
    const { client } = await connect(t, household(), { env: words.env });

    const text = await answer(client, 'get_day', { person: '小美', date: day });

    assert.equal(text.split('\n')[2], words.dayWithoutRecords);
  });

  test(`compare_periods compares the means of get_trend, in ${words.name}`, async (t) => {
    const { client } = await connect(t, household(), { env: words.env });
    const asked = { person: 'Ann', metric: 'steps' };
    const periods = [
      { label: 'A', ...march },
      { label: 'B', ...winter },
    ];
    const means = [];
    for (const { from, to } of periods) {
      means.push(found(await answer(client, 'get_trend', { ...asked, from, to }), words.trendMean));
    }

    const text = await answer(client, 'compare_periods', {
      ...asked,
      a_from: march.from,
      a_to: march.to,
      b_from: winter.from,
      b_to: winter.to,
    });

    const lines = text.split('\n');
    for (const [index, { label, from, to }] of periods.entries()) {
      const [days, mean] = means[index];
      assert.deepEqual(found(lines[2 + index], words.periodMean), [label, from, to, mean, days]);
    }
    const [a, b] = means.map(([, mean]) => numberIn(mean));
    const [difference, percent] = found(text, words.difference).map(numberIn);
    // The means are shown as whole steps, so the difference of what is shown may be one off.
    assert.ok(Math.abs(difference - (a - b)) <= 1, `${a} - ${b} = ${difference}`);
    assert.ok(Math.abs(percent - ((a - b) / b) * 100) < 0.1, `${percent} %`);
  });

  test(`compare_periods makes no difference to a period without data, in ${words.name}`, async (t) => {
    const { client } = await connect(t, household(), { env: words.env });

    const text = await answer(client, 'compare_periods', {
      person: 'Ann',
      metric: 'steps',
      a_from: march.from,
      a_to: march.to,
      b_from: '2019-01-01',
      b_to: '2019-12-31',
    });

    const lines = text.split('\n');
    assert.match(lines[2], words.periodMean);
    assert.match(lines[3], words.noPeriod);
    assert.equal(lines[4], '');
    assert.doesNotMatch(text, words.difference);
  });
}

const refusals = [
  {
    name: 'a person who is not named',
    env: environment(),
    call: ['get_overview', {}],
    message: /This Mac has 3 members, so person is required .* Available: Ann, Ben, 小美$/,
  },
  {
    name: 'a person who is not named, in Chinese',
    env: chinese,
    call: ['get_day', { date: day }],
    message: /这台电脑上有 3 个成员,person 参数必填.*可选:Ann, Ben, 小美$/,
  },
  {
    name: 'a day that does not exist',
    env: environment(),
    call: ['get_day', { person: 'Ann', date: '2024-02-30' }],
    message: /date must be YYYY-MM-DD$/,
  },
  {
    name: 'a day that does not exist, in Chinese',
    env: chinese,
    call: ['get_day', { person: 'Ann', date: '2024-02-30' }],
    message: /date 要是 YYYY-MM-DD$/,
  },
  {
    name: 'a period without its first day',
    env: environment(),
    call: [
      'compare_periods',
      { person: 'Ann', metric: 'steps', a_from: march.from, a_to: march.to, b_to: winter.to },
    ],
    message: /b_from 要是 YYYY-MM-DD$/,
  },
];

for (const { name, env, call, message } of refusals) {
  test(`${name} is an invalid argument`, async (t) => {
    const { client } = await connect(t, household(), { env });

    await assert.rejects(answer(client, ...call), { code: -32602, message });
  });
}
