/** How the page of a report looks: light and dark, on paper, and on a telephone. */
#ifndef XAS_XMS_REPORT_STYLE_H
#define XAS_XMS_REPORT_STYLE_H

inline constexpr const char *XMS_REPORT_STYLE = R"(
:root { color-scheme: light dark; --ink: #1c2430; --soft: #556070; --paper: #f5f6f8; --card: #fff; --line: #d5dae1;
  --good: #14683a; --good-back: #dcf3e4; --bad: #a11a22; --bad-back: #fde5e5; --wait: #7a4d00; --wait-back: #fdf0d0;
  --told: #1f5187; --told-back: #e2eefb; --accent: #1f5fae; }
@media (prefers-color-scheme: dark) { :root { --ink: #e4e8ee; --soft: #a3adba; --paper: #12161c; --card: #1b2129;
  --line: #343d49; --good: #7fd8a0; --good-back: #12341f; --bad: #ff9c9c; --bad-back: #45191c; --wait: #f1c566;
  --wait-back: #3d2e0c; --told: #9cc7f5; --told-back: #17304b; --accent: #8dbcf2; } }
* { box-sizing: border-box; }
body { margin: 0; background: var(--paper); color: var(--ink); font: 1rem/1.5 system-ui, sans-serif; }
header, main, footer { max-width: 64rem; margin: 0 auto; padding: 1rem; overflow-wrap: anywhere; }
h1 { font-size: 1.5rem; margin: .5rem 0 0; }
h2 { font-size: 1.15rem; margin: 1.5rem 0 .5rem; }
h3 { font-size: 1rem; margin: 0; }
h4 { font-size: .85rem; margin: .75rem 0 .25rem; color: var(--soft); font-weight: 600; }
p { margin: .25rem 0; }
a { color: var(--accent); }
.soft { color: var(--soft); }
.figures { display: flex; flex-wrap: wrap; gap: .5rem; padding: 0; margin: 1rem 0; list-style: none; }
.figures li { background: var(--card); border: 1px solid var(--line); border-radius: .5rem; padding: .5rem 1rem; }
.figures b { display: block; font-size: 1.5rem; line-height: 1.2; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; white-space: nowrap; overflow-wrap: normal; }
th, td { text-align: left; padding: .2rem 1rem .2rem 0; border-bottom: 1px solid var(--line); }
td.number, th.number { text-align: right; font-variant-numeric: tabular-nums; }
fieldset { border: 1px solid var(--line); border-radius: .5rem; margin: .5rem 0; padding: .25rem .75rem .5rem; }
legend { color: var(--soft); padding: 0 .25rem; }
fieldset span { display: inline-block; margin: .15rem .75rem .15rem 0; white-space: nowrap; }
input { accent-color: var(--accent); margin: 0 .3rem 0 0; }
.steps { list-style: none; margin: 0; padding: 0 0 0 1.25rem; border-left: 2px solid var(--line); }
.step { position: relative; background: var(--card); border: 1px solid var(--line); border-radius: .5rem;
  margin: 0 0 .75rem; padding: .6rem .9rem; }
.step::before { content: ""; position: absolute; left: -1.72rem; top: .95rem; width: .8rem; height: .8rem;
  border-radius: 50%; background: var(--told); }
.step.applied::before { background: var(--good); }
.step.refused::before { background: var(--bad); }
.step.unanswered::before { background: var(--wait); }
.step:target { outline: 2px solid var(--accent); }
.head { display: flex; flex-wrap: wrap; align-items: baseline; gap: .15rem .75rem; padding-bottom: .3rem;
  background: linear-gradient(var(--accent), var(--accent)) no-repeat 0 100% / var(--took) 3px; }
.end { border-radius: 1rem; padding: 0 .6rem; font-size: .85rem; font-weight: 600; background: var(--told-back);
  color: var(--told); }
.applied .end, .figures .applied b { color: var(--good); }
.applied .end { background: var(--good-back); }
.refused .end, .figures .refused b { color: var(--bad); }
.refused .end { background: var(--bad-back); }
.unanswered .end, .figures .unanswered b { color: var(--wait); }
.unanswered .end { background: var(--wait-back); }
.reason { color: var(--bad); margin: .25rem 0 0; }
.values { display: grid; grid-template-columns: minmax(6rem, max-content) 1fr; gap: 0 1rem; margin: 0; }
.values dt { color: var(--soft); }
.values dd { margin: 0; }
.values, pre { font: .85rem/1.45 ui-monospace, monospace; }
pre { margin: .25rem 0 0; overflow-x: auto; background: var(--paper); border-radius: .35rem; padding: .35rem 0; }
pre span { display: block; padding: 0 .6rem; white-space: pre; width: max-content; min-width: 100%; }
pre .add { background: var(--good-back); color: var(--good); }
pre .cut { background: var(--bad-back); color: var(--bad); }
pre .at { color: var(--soft); }
summary { cursor: pointer; color: var(--soft); font-size: .85rem; font-weight: 600; margin-top: .6rem;
  overflow-wrap: anywhere; }
summary code { color: var(--ink); font-weight: 400; }
@media (max-width: 32rem) { header, main, footer { padding: .75rem; } .steps { padding-left: .9rem; }
  .step { padding: .5rem .6rem; } .step::before { left: -1.37rem; } .values { grid-template-columns: 1fr; }
  .values dd { padding-left: 1rem; } table { font-size: .85rem; } th, td { padding-right: .6rem; } }
@media print { :root { color-scheme: light; --ink: #000; --soft: #444; --paper: #fff; --card: #fff; --line: #bbb;
  --good: #0b5128; --good-back: #e8f6ed; --bad: #8b1219; --bad-back: #fdeeee; --wait: #5d3b00; --wait-back: #fdf5e2;
  --told: #173f6b; --told-back: #edf4fb; --accent: #173f6b; }
  body { font-size: 9.5pt; print-color-adjust: exact; -webkit-print-color-adjust: exact; } form { display: none; }
  header, main, footer { max-width: none; padding: 0; } .head, summary { break-inside: avoid; break-after: avoid; } tr { break-inside: avoid; }
  pre span { white-space: pre-wrap; width: auto; overflow-wrap: anywhere; } a { color: inherit; text-decoration: none; } }
)";

#endif
