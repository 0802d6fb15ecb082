// Conversations that a client of the official SDK holds with the built server.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { EmptyResultSchema } from '@modelcontextprotocol/sdk/types.js';

import {
  answer,
  chinese,
  connect,
  environment,
  examples,
  household,
  numberIn,
  textOf,
} from './support.mjs';

// Two full weeks inside the sample's year, away from its last day.
const fortnight = { from: '2024-03-04', to: '2024-03-17' };

const cumulativeNote = '每日合计(同一天多个来源分别合计后取最大值,不相加)';

const wording = {
  en: {
    statistics: /^Days with data: (\d+), mean ([\d.,]+), min ([\d.,]+), max ([\d.,]+)$/,
    daily: 'Daily:',
  },
  zh: {
    statistics: /^有数据的天数:(\d+),日均 ([\d.,]+),最低 ([\d.,]+),最高 ([\d.,]+)$/,
    daily: '逐日:',
  },
};

/** The parts of get_trend's answer, numbers without grouping. Fails when it has another shape. */
function trendIn(text, { statistics, daily }) {
  const lines = text.split('\n');
  const match = statistics.exec(lines[3]);
  assert.ok(match, `no statistics in: ${lines[3]}`);
  assert.deepEqual(lines.slice(4, 6), ['', daily]);
  const end = lines.indexOf('', 6);
  assert.notEqual(end, -1, 'no empty line after the days');
  const [count, mean, min, max] = match.slice(1).map(numberIn);
  const days = lines.slice(6, end).map((line) => {
    const [day, value] = line.split('  ');
    return { day, value: numberIn(value) };
  });
  return { head: lines.slice(0, 3), count, mean, min, max, days, coverage: lines.slice(end + 1) };
}

function assertStatisticsMatchDays({ count, mean, min, max, days }) {
  const values = days.map(({ value }) => value);
  const average = values.reduce((sum, value) => sum + value, 0) / values.length;

  assert.equal(count, days.length);
  assert.equal(min, Math.min(...values));
  assert.equal(max, Math.max(...values));
  // The days are shown rounded to whole steps, so their average may be half a step off, and so
  // may the mean that is shown.
  assert.ok(Math.abs(mean - average) <= 1, `mean ${mean} of days that average ${average}`);
}

test('the server introduces itself', async (t) => {
  const { client, seen } = await connect(t, household());

  assert.deepEqual(client.getServerVersion(), { name: 'larkspur', version: '0.1' });
  assert.equal(seen.protocolVersion, '2024-11-05');
  assert.deepEqual(client.getServerCapabilities(), { tools: {}, resources: {}, prompts: {} });
  assert.match(
    client.getInstructions(),
    /^Read-only access to the Apple Health data on this Mac\./,
  );
  assert.deepEqual(await client.ping(), {});
});

test('the instructions follow the language', async (t) => {
  const { client } = await connect(t, household(), { env: chinese });

  assert.match(client.getInstructions(), /^这里是本机上 Apple 健康数据的只读访问。/);
});

test('the tools are listed in the order of the catalogue', async (t) => {
  const { client } = await connect(t, household());

  const { tools } = await client.listTools();

  assert.deepEqual(
    tools.map((tool) => tool.name),
    examples.map(({ tool }) => tool),
  );
  for (const { name, description, inputSchema } of tools) {
    assert.equal(inputSchema.type, 'object', name);
    assert.match(
      description,
      / Returns raw measurements, not a diagnosis; a gap means not collected\.$/,
    );
  }
});

test('the tools describe themselves in Chinese', async (t) => {
  const { client } = await connect(t, household(), { env: chinese });

  const { tools } = await client.listTools();

  assert.ok(tools.length > 0);
  for (const { description } of tools) {
    assert.match(description, / 本工具提供原始测量数据,不构成诊断;缺失仅代表未采集。$/);
  }
});

for (const [language, env] of Object.entries({ English: environment(), Chinese: chinese })) {
  test(`every example call is answered in ${language}`, async (t) => {
    const { client } = await connect(t, household(), { env });
    const list = { person: 'Ann', from: '2024-01-01', format: 'json', limit: 1 };
    const [newest] = JSON.parse(await answer(client, 'get_workouts', list)).workouts;

    for (const { tool, calls } of examples) {
      for (const args of Object.values(calls)) {
        if ('workout_id' in args) args.workout_id = newest.workout_id;
        assert.match(await answer(client, tool, args), /\bAnn\b/, tool);
      }
    }
  });
}

test('get_trend answers in English', async (t) => {
  const { client } = await connect(t, household());

  const result = await client.callTool({
    name: 'get_trend',
    arguments: { person: 'Ann', metric: 'steps', ...fortnight },
  });

  const trend = trendIn(textOf(result), wording.en);
  assert.deepEqual(trend.head, [
    'Member: Ann (person=ann-01)',
    `Metric: steps (count) · ${cumulativeNote}`,
    'Range: 2024-03-04 ~ 2024-03-17',
  ]);
  assertStatisticsMatchDays(trend);
  assert.match(trend.coverage[0], /./);
});

test('get_trend answers in Chinese with the same values', async (t) => {
  const dataRoot = household();
  const { client } = await connect(t, dataRoot, { env: chinese });
  const { client: english } = await connect(t, dataRoot);
  const call = {
    name: 'get_trend',
    arguments: { person: 'ann-01', metric: 'steps', ...fortnight },
  };

  const trend = trendIn(textOf(await client.callTool(call)), wording.zh);
  const englishTrend = trendIn(textOf(await english.callTool(call)), wording.en);

  assert.deepEqual(trend.head, [
    '成员:Ann(person=ann-01)',
    `指标:steps(count)· ${cumulativeNote}`,
    '区间:2024-03-04 ~ 2024-03-17',
  ]);
  assertStatisticsMatchDays(trend);
  assert.deepEqual(trend.days, englishTrend.days);
  assert.match(trend.coverage[0], /\p{Script=Han}/u);
});

test('get_trend says that a range without data is no zero', async (t) => {
  const { client } = await connect(t, household());

  const result = await client.callTool({
    name: 'get_trend',
    arguments: { person: '小美', metric: 'sleep', ...fortnight },
  });

  const lines = textOf(result).split('\n');
  assert.equal(lines[0], 'Member: 小美 (person=mei-03)');
  assert.match(lines[3], /^No data in this range\. \*\*This does not mean zero\*\* — /);
  assert.ok(!lines.includes('Daily:'));
});

test('an unknown metric is an invalid argument', async (t) => {
  const { client } = await connect(t, household());

  const call = client.callTool({
    name: 'get_trend',
    arguments: { person: 'Ann', metric: 'Steps' },
  });

  await assert.rejects(call, {
    code: -32602,
    message: /Unknown metric "Steps"\. One of: steps\(count\), /,
  });
});

test('an unknown person is an invalid argument', async (t) => {
  const { client } = await connect(t, household(), { env: chinese });

  const call = client.callTool({
    name: 'get_trend',
    arguments: { person: 'ann', metric: 'steps' },
  });

  await assert.rejects(call, {
    code: -32602,
    message: /没有叫「ann」的成员。可选:Ann, Ben, 小美$/,
  });
});

test('an unknown tool is a method not found', async (t) => {
  const { client } = await connect(t, household());

  const call = client.callTool({ name: 'get_weather', arguments: {} });

  await assert.rejects(call, { code: -32601, message: /没有这个工具:get_weather$/ });
});

test('an unknown method is a method not found and the conversation goes on', async (t) => {
  const { client } = await connect(t, household());

  const request = client.request({ method: 'foo/bar' }, EmptyResultSchema);

  await assert.rejects(request, { code: -32601, message: /没有这个方法:foo\/bar$/ });
  assert.deepEqual(await client.ping(), {});
});
