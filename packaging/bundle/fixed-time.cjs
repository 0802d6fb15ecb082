// Preloaded into the packing tool, which stamps every file of a bundle with the present moment. The
// same sources shall make the same bundle, so the present is the moment the build names.

const moment = Number(process.env.SOURCE_DATE_EPOCH) * 1000;

globalThis.Date = class extends Date {
  constructor(...parts) {
    super(...(parts.length === 0 ? [moment] : parts));
  }
};
