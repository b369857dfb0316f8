#include "NoticeLog_p.h"

Q_LOGGING_CATEGORY(lcVyrNotice, "vyr.notice")
