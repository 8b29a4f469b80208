#pragma once

struct ApplyDictionarySpec;
class VELA_DataSource;

// Applies the selected file-level items of the source to the working file: documents, file label,
// multiple-response sets, variable sets, weight and attributes, in this order.
//
// source is not null, and may be the working file itself. The working file keeps what the source
// does not have; only its sets are replaced also by none. No message is issued.
// Exceptions of the host pass through; items applied before stay applied.
void ApplyFileInfo(const ApplyDictionarySpec& record, VELA_DataSource& working,
                   const VELA_DataSource* source);
