// Workouts and their heart rate, as a client of the official SDK asks for them, page by page.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { answer, chinese, connect, environment, household, membersOf } from './support.mjs';

// Wide enough for every workout of the household.
const always = { from: '2000-01-01', to: '2099-12-31' };

const languages = [
  {
    name: 'English',
    env: environment(),
    range: `Range: ${always.from} ~ ${always.to}`,
    total: /^All matching records: (\d+) workouts$/,
    nothing: 'No workouts match this range and filters.',
    emptyPage: 'No records on this page; use a smaller offset.',
    running: 'running',
    closing: /^Totals cover all filtered workout records \(not this page\), /m,
    heartRateNote: /^Stored precision and original timezone retained\. /,
    boundary: 'Returns raw measurements, not a diagnosis; a gap means not collected.',
  },
  {
    name: 'Chinese',
    env: chinese,
    range: `区间:${always.from} ~ ${always.to}`,
    total: /^全部匹配记录汇总: (\d+) 次$/,
    nothing: '这个区间与筛选条件下没有训练记录。',
    emptyPage: '此页没有记录,请减小 offset。',
    running: '跑步',
    closing: /^汇总为筛选后全部训练记录的合计\(不是本页\),/m,
    heartRateNote: /^保留库内采样精度与原时区。/,
    boundary: '本工具提供原始测量数据,不构成诊断;缺失仅代表未采集。',
  },
];

const heartRateKeys = [
  'association',
  'available_sources',
  'boundary',
  'coverage',
  'excluded_candidate_count',
  'note',
  'pagination',
  'person',
  'person_id',
  'samples',
  'source',
  'summary',
  'units',
  'value_precision',
  'workout_end',
  'workout_id',
  'workout_start',
];

/** The moment of a stored time, "2024-03-30 14:29:31 +0800", in milliseconds since 1970. */
function moment(stamp) {
  const [day, time, zone] = stamp.split(' ');
  return Date.parse(`${day}T${time}${zone.slice(0, 3)}:${zone.slice(3)}`);
}

const isAscending = (values) => values.every((value, i) => i === 0 || values[i - 1] <= value);

/** Fails when a page repeats or passes the end: no more calls than pages can be left. */
async function pagesOf(ask, nextOffset) {
  const pages = [];
  for (let offset = 0; offset !== null; offset = nextOffset(pages.at(-1))) {
    assert.ok(pages.length < 100, 'the pages have no end');
    pages.push(await ask(offset));
  }
  return pages;
}

async function workoutsAsJson(client, args = {}) {
  const call = { person: 'ann-01', ...always, limit: 200, format: 'json', ...args };
  return JSON.parse(await answer(client, 'get_workouts', call));
}

const idsOf = (workouts) => workouts.map((workout) => workout.workout_id);

for (const words of languages) {
  test(`the text pages of get_workouts show every workout once, in ${words.name}`, async (t) => {
    const { client } = await connect(t, household(), { env: words.env });
    const [{ workouts: stored }] = membersOf(household());
    const all = await workoutsAsJson(client);
    const limit = 20;

    const pages = await pagesOf(
      (offset) => answer(client, 'get_workouts', { person: 'Ann', ...always, limit, offset }),
      (page) => Number(/^offset=.*, next_offset=(\d+)$/m.exec(page)?.[1] ?? NaN) || null,
    );

    assert.ok(stored > 2 * limit, 'there are pages to follow');
    assert.equal(pages.length, Math.ceil(stored / limit));
    for (const [index, page] of pages.entries()) {
      const lines = page.split('\n');
      assert.equal(lines[1], words.range);
      assert.equal(Number(words.total.exec(lines[2])?.[1]), stored);
      const returned = Math.min(limit, stored - index * limit);
      const counts = `offset=${index * limit}, returned_count=${returned}, total_count=${stored}, `;
      assert.ok(page.includes(`\n${counts}order=desc, has_more=${index + 1 < pages.length}`), page);
      assert.match(page, words.closing);
    }
    const ids = [...pages.join('\n').matchAll(/^ {4}workout_id=(w_[\da-f]{64})$/gm)];
    assert.deepEqual(
      ids.map(([, id]) => id),
      idsOf(all.workouts),
    );
  });

  test(`the JSON pages of get_workouts add up to the totals, in ${words.name}`, async (t) => {
    const { client } = await connect(t, household(), { env: words.env });
    const [{ workouts: stored }] = membersOf(household());

    const pages = await pagesOf(
      (offset) => workoutsAsJson(client, { limit: 30, offset }),
      (page) => page.pagination.next_offset,
    );

    const workouts = pages.flatMap((page) => page.workouts);
    assert.equal(workouts.length, stored);
    assert.equal(new Set(idsOf(workouts)).size, stored);
    assert.ok(isAscending(workouts.map(({ start }) => -moment(start))), 'newest first');
    const sumOf = (values) => values.reduce((sum, value) => sum + value, 0);
    for (const { totals, pagination, available_activities, units, boundary } of pages) {
      assert.equal(totals.count, stored);
      assert.equal(pagination.total_count, stored);
      assert.equal(sumOf(available_activities.map(({ count }) => count)), stored);
      assert.deepEqual([units.duration_min, units.distance_km], ['min', 'km']);
      assert.equal(boundary, words.boundary);
      for (const measure of ['duration_min', 'distance_km', 'active_energy_kcal']) {
        const recorded = workouts.map((workout) => workout[measure]).filter((v) => v !== null);
        assert.equal(totals[`${measure}_count`], recorded.length, measure);
        assert.ok(Math.abs(totals[measure] - sumOf(recorded)) < 1e-6, measure);
      }
    }
  });

  test(`an activity is found by its name in ${words.name}`, async (t) => {
    const { client } = await connect(t, household(), { env: words.env });
    const all = await workoutsAsJson(client);

    const named = await workoutsAsJson(client, { activity_type: words.running });

    const runs = all.workouts.filter((workout) => workout.activity_type === 'Running');
    assert.ok(runs.length > 0 && runs.length < all.workouts.length);
    assert.deepEqual(named.workouts, runs);
    assert.deepEqual(named.available_activities, all.available_activities);
  });

  test(`get_workouts tells no match from an empty page, in ${words.name}`, async (t) => {
    const { client } = await connect(t, household(), { env: words.env });
    const filter = { person: 'Ann', ...always, activity_type: 'Parkour' };

    const noMatch = await answer(client, 'get_workouts', filter);
    const emptyPage = await answer(client, 'get_workouts', {
      person: 'Ann',
      ...always,
      offset: 999,
    });

    assert.ok(noMatch.split('\n').includes(words.nothing), noMatch);
    assert.ok(emptyPage.split('\n').includes(words.emptyPage), emptyPage);
  });

  test(`the pages of get_workout_heart_rate give every sample once, in ${words.name}`, async (t) => {
    const { client } = await connect(t, household(), { env: words.env });
    const [workout] = (await workoutsAsJson(client)).workouts.filter(
      ({ hr_avg }) => hr_avg !== null,
    );
    const call = { person: 'Ann', workout_id: workout.workout_id, limit: 10 };

    const pages = await pagesOf(
      async (offset) =>
        JSON.parse(await answer(client, 'get_workout_heart_rate', { ...call, offset })),
      (page) => page.pagination.next_offset,
    );

    const samples = pages.flatMap((page) => page.samples);
    const bpm = samples.map((sample) => sample.bpm);
    const starts = samples.map(({ start }) => moment(start));
    assert.ok(pages.length > 2, 'there are pages to follow');
    assert.equal(new Set(samples.map((sample) => sample.record_id)).size, samples.length);
    assert.ok(isAscending(starts), 'oldest first');
    assert.ok(starts[0] >= moment(workout.start) && starts.at(-1) < moment(workout.end));
    for (const page of pages) {
      assert.deepEqual(Object.keys(page), heartRateKeys);
      assert.deepEqual([page.person_id, page.workout_id], ['ann-01', workout.workout_id]);
      assert.deepEqual([page.workout_start, page.workout_end], [workout.start, workout.end]);
      assert.equal(page.source, workout.source);
      assert.equal(page.pagination.total_count, samples.length);
      assert.equal(page.summary.count, samples.length);
      assert.equal(page.summary.min_bpm, Math.min(...bpm));
      assert.equal(page.summary.max_bpm, Math.max(...bpm));
      assert.match(page.note, words.heartRateNote);
      assert.equal(page.boundary, words.boundary);
    }
  });
}

test('the oldest workout comes first when the order says so', async (t) => {
  const { client } = await connect(t, household());
  const newestFirst = await workoutsAsJson(client);

  const oldestFirst = await workoutsAsJson(client, { order: 'asc' });

  assert.deepEqual(oldestFirst.workouts, newestFirst.workouts.reverse());
});

test('the environments share the workouts out between them', async (t) => {
  const { client } = await connect(t, household());
  const all = await workoutsAsJson(client);
  const flags = { indoor: true, outdoor: false, unspecified: null };

  for (const [word, flag] of Object.entries(flags)) {
    const { workouts, filters } = await workoutsAsJson(client, { environment: word });

    assert.equal(filters.environment, word);
    assert.ok(workouts.length > 0, word);
    assert.deepEqual(
      workouts,
      all.workouts.filter(({ indoor }) => indoor === flag),
    );
  }
});

test('a source with a non-breaking space is matched as it was listed', async (t) => {
  const { client } = await connect(t, household());
  const { available_sources: sources, workouts } = await workoutsAsJson(client);
  const [watch] = sources.filter((source) => source.includes('\u00a0'));

  const verbatim = await workoutsAsJson(client, { source: watch });
  const retyped = await workoutsAsJson(client, { source: watch.replaceAll('\u00a0', ' ') });

  const own = workouts.filter(({ source }) => source === watch);
  assert.ok(own.length > 0 && own.length < workouts.length);
  assert.deepEqual(verbatim.workouts, own);
  assert.deepEqual(retyped.workouts, []);
});

test('another source of heart rate is asked for by its name', async (t) => {
  const { client } = await connect(t, household());
  const heartRate = async (args) =>
    JSON.parse(await answer(client, 'get_workout_heart_rate', { person: 'Ann', ...args }));
  const { workouts } = await workoutsAsJson(client, { activity_type: 'Rowing' });
  const { workout_id } = workouts.find(({ source }) => source !== 'Chest Strap');

  const own = await heartRate({ workout_id });
  const strap = await heartRate({ workout_id, source: 'Chest Strap' });

  assert.deepEqual(own.available_sources, [own.source, 'Chest Strap']);
  assert.deepEqual(strap.available_sources, own.available_sources);
  assert.equal(strap.source, 'Chest Strap');
  assert.ok(strap.samples.length > 0);
  assert.ok(strap.samples.every(({ source }) => source === 'Chest Strap'));
  assert.ok(own.samples.every(({ source }) => source === own.source));
});

test('the workouts of one member are unknown to another', async (t) => {
  const { client } = await connect(t, household());
  const [{ workout_id }] = (await workoutsAsJson(client)).workouts;

  const call = answer(client, 'get_workout_heart_rate', { person: 'Ben', workout_id });

  await assert.rejects(call, {
    code: -32602,
    message: /没有这次训练，请从训练清单获取 workout_id$/,
  });
});

const refusals = [
  {
    name: 'a limit of 0',
    env: environment(),
    call: ['get_workouts', { person: 'Ann', limit: 0 }],
    message: /limit must be an integer in 1\.\.\.200$/,
  },
  {
    name: 'a limit of 0, in Chinese',
    env: chinese,
    call: ['get_workouts', { person: 'Ann', limit: 0 }],
    message: /limit 必须是 1\.\.\.200 范围内的整数。$/,
  },
  {
    name: 'a workout_id of no workout list',
    env: environment(),
    call: ['get_workout_heart_rate', { person: 'Ann', workout_id: 'w_1' }],
    message: /workout_id must come from get_workouts$/,
  },
];

for (const { name, env, call, message } of refusals) {
  test(`${name} is an invalid argument`, async (t) => {
    const { client } = await connect(t, household(), { env });

    await assert.rejects(answer(client, ...call), { code: -32602, message });
  });
}
