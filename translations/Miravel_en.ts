<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>AboutDialog</name>
    <message>
        <source>关于</source>
        <translation>About</translation>
    </message>
    <message>
        <source>Ostrel</source>
        <translation>Ostrel</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Miravel</source>
        <translation>Miravel</translation>
    </message>
    <message>
        <source>开源许可</source>
        <translation>Open-source licences</translation>
    </message>
</context>
<context>
    <name>AboutMenu</name>
    <message>
        <source>帮助与反馈</source>
        <translation>Help and feedback</translation>
    </message>
    <message>
        <source>关于</source>
        <translation>About</translation>
    </message>
</context>
<context>
    <name>AnswerItem</name>
    <message>
        <source>展开</source>
        <translation>Show all</translation>
    </message>
    <message>
        <source>收起</source>
        <translation>Show less</translation>
    </message>
</context>
<context>
    <name>ConversationItem</name>
    <message>
        <source>您：%1</source>
        <translation>You: %1</translation>
    </message>
    <message>
        <source>Miravel：%1</source>
        <translation>Miravel: %1</translation>
    </message>
</context>
<context>
    <name>HeldText</name>
    <message>
        <source>…（其余 %1 字不显示，将一并发送）</source>
        <translation>… (%1 more characters are not shown, but will be sent too)</translation>
    </message>
</context>
<context>
    <name>HotQuestionsColumn</name>
    <message>
        <source>换一换</source>
        <translation>More</translation>
    </message>
    <message>
        <source>热门问答</source>
        <translation>Popular</translation>
    </message>
</context>
<context>
    <name>ImageDisplay</name>
    <message>
        <source>图片预览</source>
        <translation>Picture preview</translation>
    </message>
</context>
<context>
    <name>InputMenu</name>
    <message>
        <source>剪切</source>
        <translation>Cut</translation>
    </message>
    <message>
        <source>Ctrl+X</source>
        <translation>Ctrl+X</translation>
    </message>
    <message>
        <source>复制</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>Ctrl+C</source>
        <translation>Ctrl+C</translation>
    </message>
    <message>
        <source>粘贴</source>
        <translation>Paste</translation>
    </message>
    <message>
        <source>Ctrl+V</source>
        <translation>Ctrl+V</translation>
    </message>
</context>
<context>
    <name>InputPanel</name>
    <message>
        <source>您可以尝试在此描述您的问题。</source>
        <translation>Describe your problem here.</translation>
    </message>
    <message>
        <source>问题</source>
        <translation>Question</translation>
    </message>
    <message>
        <source>发送</source>
        <translation>Send</translation>
    </message>
</context>
<context>
    <name>Miravel</name>
    <message>
        <source>您好，我是Miravel，请简要描述您的问题或错误提示!</source>
        <translation>Hello, I am Miravel. Please describe your problem or the error message in a few words.</translation>
    </message>
    <message>
        <source>您好，我是Miravel，您的桌面尚未登录鉴权，暂时无法提供智能服务。您可在“热门问答”区域查看常见问题。我将会在您登录鉴权后，提供更多智能服务。</source>
        <translation>Hello, I am Miravel. You are not signed in to your desktop yet, so I cannot answer your own questions for now. You will find common questions under “Popular”. Once you are signed in, I can do more for you.</translation>
    </message>
    <message>
        <source>您好，我是Miravel，由于网络连接失败，暂时无法提供智能服务。您可在“热门问答”区域查看常见问题。</source>
        <translation>Hello, I am Miravel. The network connection has failed, so I cannot answer your own questions for now. You will find common questions under “Popular”.</translation>
    </message>
    <message>
        <source>热门问题刷新失败，您可在“热门问答”区域查看常见问题。</source>
        <translation>The hot questions could not be refreshed. You will find common questions under “Popular”.</translation>
    </message>
    <message>
        <source>热门问题刷新成功。</source>
        <translation>The hot questions have been refreshed.</translation>
    </message>
    <message>
        <source>您好，请拨打IT支持热线: </source>
        <translation>Hello, please call the IT support line: </translation>
    </message>
    <message>
        <source>Miravel</source>
        <translation>Miravel</translation>
    </message>
</context>
<context>
    <name>OpenSouLicense</name>
    <message>
        <source>开源许可</source>
        <translation>Open-source licences</translation>
    </message>
    <message>
        <source>Miravel</source>
        <translation>Miravel</translation>
    </message>
    <message>
        <source>Miravel用到的开源软件：</source>
        <translation>Open-source software that Miravel uses:</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>开源协议</source>
        <translation>Open-source licences</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>PictureRow</name>
    <message>
        <source>查看图片</source>
        <translation>View picture</translation>
    </message>
</context>
<context>
    <name>PreviewTitleBar</name>
    <message>
        <source>最小化</source>
        <translation>Minimise</translation>
    </message>
    <message>
        <source>最大化</source>
        <translation>Maximise</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>图片预览</source>
        <translation>Picture preview</translation>
    </message>
    <message>
        <source>还原</source>
        <translation>Restore</translation>
    </message>
</context>
<context>
    <name>PreviewToolBar</name>
    <message>
        <source>原始大小</source>
        <translation>Actual size</translation>
    </message>
    <message>
        <source>适应窗口</source>
        <translation>Fit to window</translation>
    </message>
    <message>
        <source>上一张</source>
        <translation>Previous picture</translation>
    </message>
    <message>
        <source>下一张</source>
        <translation>Next picture</translation>
    </message>
    <message>
        <source>放大</source>
        <translation>Zoom in</translation>
    </message>
    <message>
        <source>缩小</source>
        <translation>Zoom out</translation>
    </message>
</context>
<context>
    <name>QARegion</name>
    <message>
        <source>Microsoft YaHei</source>
        <translation>Microsoft YaHei</translation>
    </message>
    <message>
        <source>（内容过长，仅显示前一部分。）</source>
        <translation>(This answer is too long; only its first part is shown.)</translation>
    </message>
    <message>
        <source>复制</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>Ctrl+C</source>
        <translation>Ctrl+C</translation>
    </message>
    <message>
        <source>对话</source>
        <translation>Conversation</translation>
    </message>
    <message>
        <source>您好，未找到匹配的问题，请换一种说法试试看呢！</source>
        <translation>Sorry, I found no matching question. Please try other words.</translation>
    </message>
    <message>
        <source>您好，我是Miravel，由于网络连接失败，暂时无法提供智能服务。您可在“热门问答”区域查看常见问题。</source>
        <translation>Hello, I am Miravel. The network connection has failed, so I cannot answer your own questions for now. You will find common questions under “Popular”.</translation>
    </message>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>推荐问题</source>
        <translation>Recommended questions</translation>
    </message>
</context>
<context>
    <name>RecommendBox</name>
    <message>
        <source>如果未解决您的问题，试试下面的问法：</source>
        <translation>If that did not help, try one of these:</translation>
    </message>
    <message>
        <source>您是要咨询以下问题么？</source>
        <translation>Did you mean one of these questions?</translation>
    </message>
    <message>
        <source>大家都在问：</source>
        <translation>Others also ask:</translation>
    </message>
    <message>
        <source>没有您想了解的问题？</source>
        <translation>None of these?</translation>
    </message>
    <message>
        <source>换一换</source>
        <translation>More</translation>
    </message>
    <message>
        <source>推荐问题</source>
        <translation>Recommended questions</translation>
    </message>
</context>
<context>
    <name>RecommendOnlyItem</name>
    <message>
        <source>推荐问题</source>
        <translation>Recommended questions</translation>
    </message>
</context>
<context>
    <name>SuggestionPopup</name>
    <message>
        <source>联想问题</source>
        <translation>Suggested questions</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
</context>
<context>
    <name>TitleBar</name>
    <message>
        <source>关于</source>
        <translation>About</translation>
    </message>
    <message>
        <source>最小化</source>
        <translation>Minimise</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
</context>
</TS>
