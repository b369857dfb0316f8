<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name></name>
    <message id="ID_GatherNotice_ActivityNotice">
        <source>Activity notices (%1)</source>
        <translation>活动通知 (%1)</translation>
    </message>
    <message id="ID_GatherNotice_LessonNotice">
        <source>Lesson notices (%1)</source>
        <translation>上课通知 (%1)</translation>
    </message>
    <message id="ID_Close">
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message id="ID_GatherNotice_CloseAccessibleName">
        <source>Close notices</source>
        <translation>关闭通知</translation>
    </message>
    <message id="ID_GatherNotice_ListAccessibleName">
        <source>Notices</source>
        <translation>通知列表</translation>
    </message>
    <message id="ID_ClassAheadNotice_LessonNotice">
        <source>Lesson Notice</source>
        <translation>上课提醒</translation>
    </message>
    <message id="ID_LMSClassAheadNotice_LessonWillStartAfter">
        <source>%1 will start in %2 minutes</source>
        <translation>%1 将在 %2 分钟后开始</translation>
    </message>
    <message id="ID_ClassAheadNotice_LessonWillStartAfterOneHour">
        <source>%1 will start at %2</source>
        <translation>%1 将于 %2 开始</translation>
    </message>
    <message id="ID_LMS_ClassStartNotice_LessonStart">
        <source>%1 has started</source>
        <translation>%1 已开始上课</translation>
    </message>
    <message id="ID_Cluster_Notice_Title_Notice">
        <source>Notice</source>
        <translation>通知</translation>
    </message>
    <message id="ID_AddFriend_Request">
        <source>Friend Request</source>
        <translation>好友申请</translation>
    </message>
    <message id="ID_GatherNotice_FriendRequest">
        <source>Someone has asked to add you as a friend. Click to see the request.</source>
        <translation>有人申请添加你为好友，点击查看</translation>
    </message>
    <message id="ID_StudyReportNotice_LearningReport">
        <source>Learning report</source>
        <translation>学习报告</translation>
    </message>
    <message id="ID_StudyReportNotice_TeachingReport">
        <source>Teaching report</source>
        <translation>教学报告</translation>
    </message>
    <message id="ID_StudyReportNotice_GoodJobInLesson">
        <source>Your report for%1is ready. Well done!</source>
        <translation>你在%1中表现很棒，快来查看学习报告吧</translation>
    </message>
    <message id="ID_StudyReportNotice_TeachingReportOK">
        <source>The teaching report for%1is ready</source>
        <translation>%1的教学报告已生成</translation>
    </message>
    <message id="ID_Enter_Classroom">
        <source>Enter class</source>
        <translation>进入教室</translation>
    </message>
    <message id="ID_PopNotice_CloseAccessibleName">
        <source>Close notice</source>
        <translation>关闭通知</translation>
    </message>
    <message id="ID_ClassAheadNotice_Known">
        <source>Got it</source>
        <translation>知道了</translation>
    </message>
    <message id="ID_LMSClassPrepareNotice_LessonStart">
        <source>Class is starting</source>
        <translation>即将上课</translation>
    </message>
    <message id="ID_ClassNotice_Later">
        <source>Later</source>
        <translation>稍后</translation>
    </message>
    <message id="ID_FriendRequestNotice_NewMessage">
        <source>New Message</source>
        <translation>新消息</translation>
    </message>
    <message id="ID_FriendRequest">
        <source>Friend request</source>
        <translation>好友申请</translation>
    </message>
    <message id="ID_NotAuthSchoolNotice_NeedCertification">
        <source>Your school has not been certified yet. Certify it to use all of the school's services.</source>
        <translation>您的学校尚未认证，认证后即可使用学校的全部服务。</translation>
    </message>
    <message id="ID_NotAuthSchoolNotice_NoMoreRemind">
        <source>Don't remind me again</source>
        <translation>不再提醒</translation>
    </message>
    <message id="ID_NotAuthSchoolNotice_Certification">
        <source>Certify</source>
        <translation>去认证</translation>
    </message>
    <message id="ID_Cancel">
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <!-- Study activity, micro-course and study report pop-ups. -->
    <message id="ID_HomeworkNotice_TaskNotice">
        <source>Assignment notice</source>
        <translation>作业通知</translation>
    </message>
    <message id="ID_MicroCourseNotice_Notice">
        <source>Micro-lecture notice</source>
        <translation>微课通知</translation>
    </message>
    <message id="ID_MicroCourseNotice_YourMicrolectureAuditFailed">
        <source>Your micro-lecture did not pass the review. Please revise it.</source>
        <translation>你的微课未通过审核，请修改后重新提交</translation>
    </message>
    <message id="ID_MicroCourseNotice_ViewDetails">
        <source>View details</source>
        <translation>查看详情</translation>
    </message>
    <message id="ID_MicroCourseNotice_Later">
        <source>Later</source>
        <translation>稍后再说</translation>
    </message>
</context>
</TS>
