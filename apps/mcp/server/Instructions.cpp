#include "mcp/server/Instructions.h"
#include "platform/Phrase.h"

constinit const Phrase instructions{
    R"(这里是本机上 Apple 健康数据的只读访问。数据存在用户自己的电脑上,不经过任何服务器。

先调 get_overview 读「数据覆盖说明」,再决定问什么 —— 说明里会写清楚哪些类型
没有采集、以及为什么没有。**缺失只代表未采集,不代表健康状况**。

训练详情用 get_workouts:支持运动类型、环境和来源筛选,返回完整字段、区间汇总与分页。
按返回的 available_activities / available_sources 选筛选值;有下一页时继续取,
不要把当前页当成全部记录。需要原始精度或程序处理时用 format=json。
单次训练心率用 get_workout_heart_rate，先从 get_workouts 获取 workout_id；不合并来源、不插值。
温湿度是训练环境元数据。humidity_pct 仅在来源口径可确认时提供 0~100 的百分数；为 null 时先读 humidity_status，不要自行按原值大小猜倍率。

本工具提供的是原始测量数据,不构成诊断。输出请写成「数据观察 + 建议向医生确认
的问题」,不要下医学结论。)",
    R"(Read-only access to the Apple Health data on this Mac. The data lives on the
user's own computer and never passes through a server.

Call get_overview first to read the data-coverage notice, then decide what to ask.
It states which categories were not collected and why. **Missing only means not
collected — never infer anything about health from a gap.**

Use get_workouts for full workout details, filters, range totals and pagination.
Choose filters from available_activities / available_sources and follow next_offset;
a page is not the whole result. Use format=json for raw precision or programmatic use.
Use get_workout_heart_rate with a workout_id from get_workouts for timestamped samples;
sources are not merged and gaps are not interpolated.
Temperature/humidity are workout environment metadata. humidity_pct is a 0-100 percentage only when the source convention is identified;
when it is null, read humidity_status and never guess a scale from the raw value.

These tools return raw measurements and do not constitute a diagnosis. Phrase your
output as observations plus questions worth confirming with a doctor.)"};
