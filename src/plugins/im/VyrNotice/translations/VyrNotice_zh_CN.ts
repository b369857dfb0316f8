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
    <!-- Exam and homework pop-ups -->
    <message id="ID_ExamNotice_TestNotice">
        <source>Test notice</source>
        <translation>测验通知</translation>
    </message>
    <message id="ID_HomeworkNotice_TaskNotice">
        <source>Homework notice</source>
        <translation>作业通知</translation>
    </message>
    <!-- Study activity, micro-course and study report pop-ups. -->
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
        <translation>稍后</translation>
    </message>
    <message id="ID_ExamNotice_TestStartedSubmitOnTime">
        <source>The test %1 has started. Please submit it on time.</source>
        <translation>测验%1已开始，请按时提交。</translation>
    </message>
    <message id="ID_ExamNotice_TestBeReviewedCheck">
        <source>Your test %1 has been reviewed. Check it now.</source>
        <translation>你的测验%1已批阅，快去查看吧。</translation>
    </message>
    <message id="ID_ExamNotice_TestBeReviewedAgainCheck">
        <source>Your test %1 has been reviewed again. Check it now.</source>
        <translation>你的测验%1已重新批阅，快去查看吧。</translation>
    </message>
    <message id="ID_ExamNotice_TestWillExpire">
        <source>The test %1 closes in %2 hours. Please submit it in time.</source>
        <translation>测验%1将在%2小时后截止，请及时提交。</translation>
    </message>
    <message id="ID_ExamNotice_TestBeSubmitCkeck">
        <source>%1 submitted the test %2. Review it now.</source>
        <translation>%1提交了测验%2，快去批阅吧。</translation>
    </message>
    <message id="ID_ExamNotice_TestBeSubmitLaterCkeck">
        <source>%1 submitted the test %2 late. Review it now.</source>
        <translation>%1补交了测验%2，快去批阅吧。</translation>
    </message>
    <message id="ID_HomeworkNotice_TestStartedSubmitOnTime">
        <source>The homework %1 is out. Please submit it on time.</source>
        <translation>作业%1已布置，请按时提交。</translation>
    </message>
    <message id="ID_HomeworkNotice_TaskNeedBeReviewCheck">
        <source>Your homework %1 has been reviewed. Check it now.</source>
        <translation>你的作业%1已批改，快去查看吧。</translation>
    </message>
    <message id="ID_HomeworkNotice_TaskNeedBeRevised">
        <source>Your homework %1 came back for revision. Please revise it.</source>
        <translation>你的作业%1被退回订正，请及时订正。</translation>
    </message>
    <message id="ID_HomeworkNotice_TaskNeedBeReviewAgainCheck">
        <source>Your homework %1 has been reviewed again. Check it now.</source>
        <translation>你的作业%1已重新批改，快去查看吧。</translation>
    </message>
    <message id="ID_HomeworkNotice_TaskUnFinishedSubmitInTime">
        <source>You haven't finished the homework %1. Please submit it in time.</source>
        <translation>你的作业%1还未完成，请及时提交。</translation>
    </message>
    <message id="ID_HomeworkNotice_TestWillExpire">
        <source>The homework %1 is due in %2 hours. Please submit it in time.</source>
        <translation>作业%1将在%2小时后截止，请及时提交。</translation>
    </message>
    <message id="ID_HomeworkNotice_RemindStuSubmitAgain">
        <source>Please submit the homework %1 again.</source>
        <translation>请重新提交作业%1。</translation>
    </message>
    <message id="ID_HomeworkNotice_TestBeSubmitCkeck">
        <source>%1 submitted the homework %2. Review it now.</source>
        <translation>%1提交了作业%2，快去批改吧。</translation>
    </message>
    <message id="ID_HomeworkNotice_RevisedTaskCheck">
        <source>%1 submitted the revised homework %2. Review it now.</source>
        <translation>%1提交了订正后的作业%2，快去批改吧。</translation>
    </message>
    <message id="ID_HomeworkNotice_TestBeSubmitLaterCkeck">
        <source>%1 submitted the homework %2 late. Review it now.</source>
        <translation>%1补交了作业%2，快去批改吧。</translation>
    </message>
    <!-- The cluster notice reminder. -->
    <message id="ID_Notice_ViewNow">
        <source>View now</source>
        <translation>立即查看</translation>
    </message>
    <message id="ID_Requesting">
        <source>Requesting...</source>
        <translation>请求中...</translation>
    </message>
    <message id="ID_Notice_NoticeDeleted">
        <source>This notice has been deleted</source>
        <translation>该通知已被删除</translation>
    </message>
    <message id="ID_friendrequesttreeview_NewFriend">
        <source>New Friends</source>
        <translation>新的好友</translation>
    </message>
    <message id="ID_friendrequesttreeview_NewFriendRequest">
        <source>Friend Requests</source>
        <translation>好友申请</translation>
    </message>
    <message id="ID_AddFriends">
        <source>Add Friends</source>
        <translation>添加好友</translation>
    </message>
    <message id="ID_friendrequesttreeview_PersonDetail">
        <source>View Profile</source>
        <translation>查看资料</translation>
    </message>
    <message id="ID_friendrequesttreeview_DeleteMessage">
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message id="ID_friendrequesttreeview_IFDeleteFrindRequest">
        <source>Delete the friend request from %1?</source>
        <translation>确定删除%1的好友申请吗？</translation>
    </message>
    <message id="ID_friendrequesttreeview_RequestTimeOut">
        <source>This request has expired: requests can only be answered within 7 days.</source>
        <translation>该好友申请已过期，好友申请需在7天内处理。</translation>
    </message>
    <message id="ID_friendrequesttreeview_QuerySendFailed">
        <source>Your answer couldn't be sent. Please try again.</source>
        <translation>发送失败，请重试。</translation>
    </message>
    <message id="ID_SettingsWidget_EnterseparatePassword">
        <source>Enter the Separate Password</source>
        <translation>输入独立密码</translation>
    </message>
    <message id="ID_Today">
        <source>Today</source>
        <translation>今天</translation>
    </message>
    <message id="ID_Agree">
        <source>Agree</source>
        <translation>同意</translation>
    </message>
    <message id="ID_friendrequest_Refuse">
        <source>Refuse</source>
        <translation>拒绝</translation>
    </message>
    <message id="ID_friendrequest_Agreed">
        <source>Agreed</source>
        <translation>已同意</translation>
    </message>
    <message id="ID_friendrequest_Rejected">
        <source>Rejected</source>
        <translation>已拒绝</translation>
    </message>
    <message id="ID_friendrequest_WaitingVerify">
        <source>Waiting</source>
        <translation>等待验证</translation>
    </message>
    <message id="ID_friendrequest_Overdue">
        <source>Expired</source>
        <translation>已过期</translation>
    </message>
    <message id="ID_friendrequest_AgreeFriendRequest">
        <source>You agreed to the friend request</source>
        <translation>你已同意对方的好友申请</translation>
    </message>
    <message id="ID_friendrequest_FriendRequestHasBeenAgreed">
        <source>Your friend request has been agreed</source>
        <translation>对方已同意你的好友申请</translation>
    </message>
    <message id="ID_friendrequest_RejectFriendRequest">
        <source>You refused the friend request</source>
        <translation>你已拒绝对方的好友申请</translation>
    </message>
    <message id="ID_friendrequest_FriendRequestHasBeenReject">
        <source>Your friend request has been refused</source>
        <translation>对方已拒绝你的好友申请</translation>
    </message>
</context>
</TS>
