#pragma once

/// What an export writes. The numbers are shared with the callers and are not to change.
enum ExportType : int {
    CsvEnglish = 8,
    CsvChinese = 9,
    DeskPhoneXml = 13,
    CordlessXml = 14,
};
