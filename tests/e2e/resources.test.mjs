// Resources and prompts, as a client of the official SDK lists and reads them.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { answer, chinese, connect, environment, household, membersOf } from './support.mjs';

const languages = [
  {
    name: 'English',
    env: environment(),
    resourceName: (name) => `${name}'s health overview`,
    resourceDescription: 'Overview plus the data-coverage notice. Read this first.',
    prompts: [
      {
        name: 'how_am_i',
        description: 'How have I been lately',
        text:
          'Start with get_overview to read my coverage notice and summary, then tell me what ' +
          "changed recently. Stick to what the data shows; don't guess at gaps.",
      },
      {
        name: 'sleep_and_exercise',
        description: 'Look at the relationship between my exercise and sleep',
        text:
          'Use get_trend for sleep and exercise_minutes over the last 90 days and see whether ' +
          "they move together. Correlation isn't causation — say what's uncertain.",
      },
      {
        name: 'doctor_questions',
        description: 'Help me prepare questions for my next doctor visit',
        text:
          'Read get_overview, then list five questions worth asking my doctor. For each, name ' +
          "the observation it came from and state the data's limits.",
      },
    ],
  },
  {
    name: 'Chinese',
    env: chinese,
    resourceName: (name) => `${name} 的健康概览`,
    resourceDescription: '数据概览 + 数据覆盖说明。连上先读这个,再决定问什么。',
    prompts: [
      {
        name: 'how_am_i',
        description: '我最近怎么样',
        text:
          '先用 get_overview 读我的数据覆盖说明与摘要,然后告诉我最近这段时间有什么值得注意的变化。' +
          '只说数据里看得到的,缺失的项不要猜。',
      },
      {
        name: 'sleep_and_exercise',
        description: '帮我看看运动和睡眠的关系',
        text:
          '用 get_trend 分别取 sleep 与 exercise_minutes 最近 90 天的序列,看看它们有没有同向变化。' +
          '注意:相关不等于因果,把不确定的地方说出来。',
      },
      {
        name: 'doctor_questions',
        description: '帮我准备下次看医生要问的问题',
        text:
          '读 get_overview,然后列出 5 个值得在下次门诊问医生的问题。' +
          '每个问题都要指出它是基于哪个数据观察提出来的,并明确写出数据的局限。',
      },
    ],
  },
];

for (const { name, env, resourceName, resourceDescription, prompts } of languages) {
  test(`every member has an overview among the resources, in ${name}`, async (t) => {
    const { client } = await connect(t, household(), { env });

    const { resources } = await client.listResources();

    const expected = membersOf(household()).map((member) => ({
      uri: `larkspur://${member.id}/overview`,
      name: resourceName(member.name),
      mimeType: 'text/plain',
      description: resourceDescription,
    }));
    assert.equal(resources.length, 3);
    assert.deepEqual(resources, expected);
  });

  test(`every resource reads like get_overview, in ${name}`, async (t) => {
    const { client } = await connect(t, household(), { env });
    const { resources } = await client.listResources();

    for (const [index, { id }] of membersOf(household()).entries()) {
      const { uri } = resources[index];
      const { contents } = await client.readResource({ uri });

      const text = await answer(client, 'get_overview', { person: id });
      assert.deepEqual(contents, [{ uri, mimeType: 'text/plain', text }]);
    }
  });

  test(`the prompts are listed, in ${name}`, async (t) => {
    const { client } = await connect(t, household(), { env });

    const listed = await client.listPrompts();

    assert.deepEqual(
      listed.prompts,
      prompts.map((prompt) => ({ name: prompt.name, description: prompt.description })),
    );
  });

  for (const prompt of prompts) {
    test(`the prompt ${prompt.name} is one message of the user, in ${name}`, async (t) => {
      const { client } = await connect(t, household(), { env });

      const { messages } = await client.getPrompt({ name: prompt.name });

      assert.deepEqual(messages, [{ role: 'user', content: { type: 'text', text: prompt.text } }]);
    });
  }
}

for (const uri of ['larkspur://Ann/overview', 'larkspur://ann-01', 'file://ann-01/overview']) {
  test(`the resource ${uri} is an invalid argument`, async (t) => {
    const { client } = await connect(t, household());

    const reading = client.readResource({ uri });

    await assert.rejects(reading, (error) => {
      assert.equal(error.code, -32602);
      assert.ok(error.message.endsWith(`不认识的 uri:${uri}`), error.message);
      return true;
    });
  });
}

test('an unknown prompt is an invalid argument', async (t) => {
  const { client } = await connect(t, household());

  const request = client.getPrompt({ name: 'how_are_you' });

  await assert.rejects(request, { code: -32602, message: /没有这个预设:how_are_you$/ });
});
